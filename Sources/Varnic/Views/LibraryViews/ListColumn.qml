import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The second column: a title and the list of the section, or what the search found.
FocusScope {
    id: column

    /// Whether the list is there, beside its header.
    required property bool isWhole

    /// Moves the keyboard to the search.
    function search() {
        header.search();
    }

    // What the list itself does not take: there is nothing above its current row.
    Keys.onUpPressed: event => {
        event.accepted = Library.isSearching && list.activeFocus;
        if (event.accepted) {
            header.comeBack();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.Palette.paper
    }

    ListHeader {
        id: header

        width: parent.width

        onLeftForList: {
            if ((list.item as ListScope)?.isEmpty === false) {
                list.forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }

    LoadProblem {
        id: problem

        anchors.top: header.bottom
        width: parent.width
    }

    Loader {
        id: list

        active: column.isWhole
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: problem.bottom
        focus: true
        source: Library.isSearching ? "SearchResultsList.qml" : Library.section === Library.Todos ? "TodoList.qml" : Library.section === Library.Cards ? "DeckList.qml" : "NoteList.qml"

        // The list is where Escape leads to.
        Keys.onEscapePressed: {
        }
        onLoaded: item.focus = true
    }
}
