import QtQuick
import QtQuick.Templates as T
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The open to-dos of all notes.
ListScope {
    isEmpty: rows.count === 0
    objectName: "todoList"

    ListView {
        id: list

        Accessible.name: "To-dos"
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
        topMargin: Theme.Space.s

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }
        delegate: TodoItem {
            width: ListView.view ? ListView.view.width : 0
        }
        model: TodoListModel {
            id: rows
        }

        Theme.RowOrder {
            listView: list
        }

        Keys.onEnterPressed: (currentItem as TodoItem)?.choose()
        Keys.onReturnPressed: (currentItem as TodoItem)?.choose()
        Keys.onSpacePressed: (currentItem as TodoItem)?.markDone()
    }

    EmptyMessage {
        anchors.centerIn: parent
        detail: "To-dos from your calls and notes gather here."
        size: 26
        symbol: "checkmark.circle"
        title: "Nothing left to do"
        visible: Library.isLoaded && rows.count === 0
        width: parent.width - 2 * Theme.Space.xl
    }
}
