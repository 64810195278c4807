import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The second column: a title and the list of the section, or what the search found.
FocusScope {
    id: column

    /// Moves the keyboard to the search.
    function search() {
        header.search();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.Palette.paper
    }

    ListHeader {
        id: header

        width: parent.width
    }

    LoadProblem {
        id: problem

        anchors.top: header.bottom
        width: parent.width
    }

    Loader {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: problem.bottom
        focus: true
        sourceComponent: Library.isSearching ? results : Library.section === Library.Todos ? todos : Library.section === Library.Cards ? decks : notes
    }

    Component {
        id: notes

        NoteList {
        }
    }

    Component {
        id: results

        SearchResultsList {
        }
    }

    Component {
        id: todos

        TodoList {
        }
    }

    Component {
        id: decks

        DeckList {
        }
    }
}
