import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The title of the list, with the menu and a new note.
Item {
    implicitHeight: 48

    MainMenuButton {
        id: menu

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter
    }

    Text {
        Accessible.role: Accessible.Heading
        anchors.left: menu.right
        anchors.leftMargin: 4
        anchors.right: note.left
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.ink
        elide: Text.ElideRight
        font: Theme.Typo.subheading
        text: Library.isSearching ? "Search" : Library.sectionTitle
    }

    Theme.IconButton {
        id: note

        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter
        help: "New Note"
        size: 30
        symbol: "square.and.pencil"

        onClicked: Library.newNote()
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }
}
