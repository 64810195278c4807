import QtQuick
import Varnic.Theme as Theme

/// A field for what is looked for. Escape and the cross empty it; Escape leaves an empty one.
PaperTextField {
    id: field

    Accessible.searchEdit: true
    leftPadding: 30
    rightPadding: 28

    Keys.onEscapePressed: event => {
        event.accepted = text !== "";
        clear();
    }

    Theme.Symbol {
        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkFaint
        name: "magnifyingglass"
        size: 12
        weight: Font.Medium
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        help: "Clear the search"
        objectName: "clear"
        size: 22
        symbol: "xmark"
        visible: field.text !== ""

        onClicked: {
            field.clear();
            field.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
}
