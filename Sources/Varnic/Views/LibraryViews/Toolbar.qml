import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// What stands above the page: the search.
Rectangle {
    id: toolbar

    /// Moves the keyboard to the search.
    function search() {
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }

    color: Theme.Palette.paper
    implicitHeight: 48

    SearchField {
        id: field

        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.l
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(260, parent.width - 2 * Theme.Space.l)
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }
}
