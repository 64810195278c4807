import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The toolbar of the list: the menu, a title, a new note, and the search.
FocusScope {
    id: header

    /// The keyboard goes on from the search into the list.
    signal leftForList

    /// Moves the keyboard back to the search.
    function comeBack() {
        field.forceActiveFocus(Qt.BacktabFocusReason);
    }

    /// Moves the keyboard to the search.
    function search() {
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }

    implicitHeight: 88

    MainMenuButton {
        id: menu

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.s
        anchors.top: parent.top
        anchors.topMargin: 9
    }

    Theme.Heading {
        anchors.left: menu.right
        anchors.leftMargin: 4
        anchors.right: note.left
        anchors.verticalCenter: menu.verticalCenter
        color: Theme.Palette.ink
        elide: Text.ElideRight
        font: Theme.Typo.subheading
        text: Library.listTitle
    }

    Theme.IconButton {
        id: note

        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.s
        anchors.verticalCenter: menu.verticalCenter
        help: "New Note"
        size: 30
        symbol: "square.and.pencil"

        onClicked: Library.newNote()
    }

    Theme.SearchField {
        id: field

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 10
        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.m
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.m
        placeholderText: "Search notes and calls"
        text: Library.query

        Keys.onDownPressed: header.leftForList()
        onTextChanged: Library.query = text
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }
}
