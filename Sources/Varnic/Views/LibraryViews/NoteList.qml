import QtQuick
import QtQuick.Templates as T
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The notes of the section.
ListScope {
    id: notes

    isEmpty: rows.count === 0
    objectName: "noteList"

    function showMenu(row: NoteRow, x: real, y: real) {
        menu.active = true;
        (menu.item as NoteMenu).show(row, x, y);
    }

    ListView {
        id: list

        Accessible.name: Library.listTitle
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.fill: parent
        anchors.leftMargin: Theme.Space.s
        anchors.rightMargin: Theme.Space.s
        bottomMargin: Theme.Space.s
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 400
        clip: true
        currentIndex: rows.currentRow
        focus: true
        highlightMoveDuration: 0
        highlightResizeDuration: 0
        keyNavigationEnabled: false
        reuseItems: true
        spacing: 2
        topMargin: Theme.Space.s

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }
        delegate: NoteRow {
            width: ListView.view ? ListView.view.width : 0
        }
        model: NoteListModel {
            id: rows
        }

        Theme.RowOrder {
            listView: list
        }

        Keys.onDeletePressed: Library.remove(rows.currentId)
        Keys.onPressed: event => {
            if (Theme.MenuKey.isPressed(event)) {
                notes.showMenu(currentItem as NoteRow, Theme.Space.l, currentItem.height / 2);
                event.accepted = true;
            } else {
                event.accepted = rows.moveByKey(event.key, Math.floor(height / 80));
            }
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: eventPoint => {
            const place = list.mapFromItem(notes, eventPoint.position);
            const row = list.itemAt(place.x, place.y + list.contentY) as NoteRow;
            if (row) {
                row.choose();
                notes.showMenu(row, eventPoint.position.x - list.x, place.y + list.contentY - row.y);
            }
        }
    }

    EmptyList {
        anchors.centerIn: parent
        visible: Library.isLoaded && rows.count === 0
        width: Math.min(280, parent.width)
    }

    Loader {
        id: menu

        active: false

        sourceComponent: NoteMenu {
        }
    }
}
