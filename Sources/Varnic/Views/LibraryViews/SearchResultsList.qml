import QtQuick
import QtQuick.Templates as T
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// What the search found, under the titles of the notes.
ListScope {
    isEmpty: rows.count === 0
    objectName: "searchResults"

    ListView {
        id: list

        Accessible.name: "Search results"
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.fill: parent
        anchors.leftMargin: Theme.Space.s
        anchors.rightMargin: Theme.Space.s
        bottomMargin: Theme.Space.s
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        focus: true
        highlightMoveDuration: 0
        highlightResizeDuration: 0
        reuseItems: true
        topMargin: Theme.Space.s

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }
        delegate: SearchResultRow {
            width: ListView.view ? ListView.view.width : 0
        }
        model: SearchResultsModel {
            id: rows
        }

        Theme.RowOrder {
            listView: list
        }

        Keys.onEnterPressed: (currentItem as SearchResultRow)?.choose()
        Keys.onEscapePressed: Library.query = ""
        Keys.onReturnPressed: (currentItem as SearchResultRow)?.choose()
        Keys.onSpacePressed: (currentItem as SearchResultRow)?.choose()
        onActiveFocusChanged: currentIndex = Math.max(0, currentIndex)
    }

    EmptyMessage {
        anchors.centerIn: parent
        detail: "Search covers titles, notes, tables, cards, transcripts and emails."
        size: 22
        symbol: "magnifyingglass"
        title: Library.noMatchText
        visible: rows.count === 0 && !rows.isSearching
        width: parent.width - 2 * Theme.Space.xl
    }
}
