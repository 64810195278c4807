pragma ComponentBehavior
import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The sections of the library. Arrows move between them.
ListView {
    id: list

    Accessible.name: "Sections"
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    currentIndex: sections.currentRow
    keyNavigationEnabled: false
    spacing: 2

    delegate: SectionItem {
        isCurrent: ListView.isCurrentItem
        isFocused: list.activeFocus
        width: list.width

        onChosen: {
            list.forceActiveFocus(Qt.MouseFocusReason);
            sections.select(index);
        }
    }
    model: SectionModel {
        id: sections
    }

    Keys.onPressed: event => event.accepted = sections.moveByKey(event.key)
}
