pragma ComponentBehavior
import QtQuick
import QtQuick.Templates as T
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The notes of the section.
FocusScope {
    id: notes

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

        T.ScrollBar.vertical: ThinScrollBar {
        }
        delegate: NoteRow {
            isCurrent: ListView.isCurrentItem
            isFocused: list.activeFocus
            width: list.width

            onChosen: {
                list.forceActiveFocus(Qt.MouseFocusReason);
                rows.select(index);
            }
            onMenuRequested: (x, y) => {
                rows.select(index);
                menu.show(noteId, this, x, y);
            }
        }
        model: NoteListModel {
            id: rows
        }

        Keys.onDeletePressed: Library.remove(rows.currentId)
        Keys.onMenuPressed: openMenu()
        Keys.onPressed: event => {
            if (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
                openMenu();
                event.accepted = true;
            } else {
                event.accepted = rows.moveByKey(event.key, Math.floor(height / 80));
            }
        }

        function openMenu() {
            if (currentItem && rows.currentId !== "") {
                menu.show(rows.currentId, currentItem, Theme.Space.l, currentItem.height / 2);
            }
        }
    }

    EmptyList {
        anchors.centerIn: parent
        visible: Library.isLoaded && rows.count === 0
        width: Math.min(280, parent.width)
    }

    NoteMenu {
        id: menu
    }
}
