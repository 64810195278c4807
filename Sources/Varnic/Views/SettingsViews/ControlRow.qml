import QtQuick
import QtQuick.Layouts
import Varnic.Theme as Theme

/// A row with what it is called at the left and what sets it at the right.
FormRow {
    id: row

    default property alias controls: place.data
    property string detail
    required property string text

    RowLayout {
        spacing: Theme.Space.m
        width: parent.width

        Column {
            Layout.alignment: Qt.AlignVCenter
            Layout.fillWidth: true
            Layout.minimumWidth: 120
            spacing: 2

            Text {
                Accessible.ignored: true
                color: Theme.Palette.ink
                font: Theme.Typo.ui
                text: row.text
                width: parent.width
                wrapMode: Text.Wrap
            }

            Text {
                Accessible.name: text
                Accessible.role: Accessible.StaticText
                color: Theme.Palette.inkSoft
                font: Theme.Typo.caption
                text: row.detail
                textFormat: Text.PlainText
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
            }
        }

        Row {
            id: place

            Layout.alignment: Qt.AlignVCenter
            spacing: Theme.Space.s
        }
    }
}
