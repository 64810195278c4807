import QtQuick
import QtQuick.Layouts
import Varnic.Theme as Theme

/// One thing that recording takes.
RowLayout {
    id: item

    required property string detail
    required property bool isDenied
    required property bool isGranted
    required property string remedy
    required property string title

    signal allowed
    signal opened

    Accessible.description: detail
    Accessible.name: title
    Accessible.role: Accessible.Grouping
    spacing: Theme.Space.m

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2

        Theme.Label {
            color: Theme.Palette.ink
            font: Theme.Typo.uiStrong
            text: item.title
        }

        Theme.Label {
            Layout.fillWidth: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.caption
            text: item.detail
            wrapMode: Text.Wrap
        }
    }

    Row {
        Accessible.name: item.title + ": Allowed"
        Accessible.role: Accessible.StaticText
        spacing: 4
        visible: item.isGranted

        Theme.Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.ok
            name: "checkmark.circle.fill"
            size: 12
        }

        Text {
            Accessible.ignored: true
            color: Theme.Palette.ok
            font: Theme.Typo.caption
            text: "Allowed"
        }
    }

    Theme.QuietButton {
        Accessible.description: item.title
        compact: true
        text: item.isDenied ? item.remedy : "Allow"
        visible: !item.isGranted

        onClicked: item.isDenied ? item.opened() : item.allowed()
    }
}
