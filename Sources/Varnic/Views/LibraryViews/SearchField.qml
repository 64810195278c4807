import QtQuick
import QtQuick.Templates as T
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The search over all notes.
T.TextField {
    id: field

    Accessible.name: "Search notes and calls"
    Accessible.role: Accessible.EditableText
    Accessible.searchEdit: true
    color: Theme.Palette.ink
    font: Theme.Typo.ui
    implicitHeight: 30
    leftPadding: 30
    placeholderText: "Search notes and calls"
    rightPadding: 28
    selectByMouse: true
    selectedTextColor: Theme.Palette.ink
    selectionColor: Theme.Palette.highlight
    text: Library.query
    verticalAlignment: TextInput.AlignVCenter

    background: Rectangle {
        border.color: field.activeFocus ? Theme.Palette.you : Theme.Palette.rule
        border.width: field.activeFocus ? 2 : 1
        color: Theme.Palette.surface
        radius: Theme.Radius.control
    }

    Keys.onEscapePressed: Library.query = ""
    onTextEdited: Library.query = text

    Text {
        Accessible.ignored: true
        color: Theme.Palette.inkFaint
        elide: Text.ElideRight
        font: field.font
        height: parent.height
        text: field.placeholderText
        verticalAlignment: Text.AlignVCenter
        visible: field.text === "" && field.preeditText === ""
        width: parent.width - field.leftPadding - field.rightPadding
        x: field.leftPadding
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

    Theme.IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        help: "Clear the search"
        size: 22
        symbol: "xmark"
        visible: field.text !== ""

        onClicked: {
            Library.query = "";
            field.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
}
