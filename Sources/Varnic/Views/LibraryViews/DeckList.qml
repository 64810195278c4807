import QtQuick
import QtQuick.Templates as T
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The notes that hold flashcards.
ListScope {
    isEmpty: rows.count === 0
    objectName: "deckList"

    ListView {
        id: list

        Accessible.name: "Flashcards"
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
        spacing: 2
        topMargin: Theme.Space.s

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }
        delegate: DeckItem {
            width: ListView.view ? ListView.view.width : 0
        }
        model: DeckListModel {
            id: rows
        }

        Theme.RowOrder {
            listView: list
        }

        Keys.onEnterPressed: (currentItem as DeckItem)?.choose()
        Keys.onReturnPressed: (currentItem as DeckItem)?.choose()
        Keys.onSpacePressed: (currentItem as DeckItem)?.study()
    }

    EmptyMessage {
        anchors.centerIn: parent
        detail: "In any note, type “question :: answer” to make a card."
        size: 24
        symbol: "rectangle.on.rectangle.angled"
        title: "No flashcards yet"
        visible: Library.isLoaded && rows.count === 0
        width: parent.width - 2 * Theme.Space.xl
    }
}
