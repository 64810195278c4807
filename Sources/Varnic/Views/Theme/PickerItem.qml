import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A choice in the list of a picker.
T.ItemDelegate {
    id: item

    property string detail
    required property int index
    /// It is the choice that holds.
    property bool isSelected
    required property string modelData

    Accessible.description: detail
    Accessible.name: modelData
    Accessible.onPressAction: clicked()
    Accessible.role: Accessible.ListItem
    implicitHeight: implicitContentHeight + 12
    leftPadding: 26
    rightPadding: 8

    background: Rectangle {
        color: item.highlighted ? Theme.Palette.wash : "transparent"
        radius: 5

        Theme.Symbol {
            anchors.left: parent.left
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.inkSoft
            name: "checkmark"
            size: 11
            visible: item.isSelected
        }
    }
    contentItem: Column {
        Text {
            Accessible.ignored: true
            color: Theme.Palette.ink
            elide: Text.ElideRight
            font: Theme.Typo.ui
            text: item.modelData
            textFormat: Text.PlainText
            width: parent.width
        }

        Text {
            Accessible.ignored: true
            color: Theme.Palette.inkSoft
            elide: Text.ElideRight
            font: Theme.Typo.caption
            text: item.detail
            textFormat: Text.PlainText
            visible: text !== ""
            width: parent.width
        }
    }
}
