import QtQuick
import Varnic.LibraryViews

/// The sections of the library. Arrows move between them.
ListView {
    id: list

    Accessible.name: "Sections"
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    currentIndex: sections.currentRow
    highlightMoveDuration: 0
    keyNavigationEnabled: false
    spacing: 2

    delegate: SectionItem {
        width: ListView.view ? ListView.view.width : 0
    }
    model: SectionModel {
        id: sections
    }

    Keys.onPressed: event => event.accepted = sections.moveByKey(event.key)
}
