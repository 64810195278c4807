import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// A section of the sidebar.
Item {
    id: item

    required property string badge
    required property int index
    readonly property bool isCurrent: ListView.isCurrentItem
    readonly property bool isFocused: ListView.view ? ListView.view.activeFocus : false
    required property int section
    required property string symbolName
    required property string title

    function choose() {
        ListView.view.forceActiveFocus(Qt.MouseFocusReason);
        Library.section = section;
    }

    Accessible.description: badge
    Accessible.focusable: true
    Accessible.focused: isCurrent && isFocused
    Accessible.name: title
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: isCurrent
    implicitHeight: 30

    Accessible.onPressAction: choose()

    ListGround {
        anchors.fill: parent
        isCurrent: item.isCurrent
        isFocused: item.isFocused
        isHovered: hover.hovered
    }

    Theme.Symbol {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter
        color: item.isCurrent ? Theme.Palette.you : Theme.Palette.inkSoft
        name: item.symbolName
        size: 13
        weight: Font.Medium
    }

    Text {
        Accessible.ignored: true
        anchors.left: icon.right
        anchors.leftMargin: Theme.Space.s
        anchors.right: number.left
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.ink
        elide: Text.ElideRight
        font: item.isCurrent ? Theme.Typo.uiStrong : Theme.Typo.ui
        text: item.title
    }

    Text {
        id: number

        Accessible.ignored: true
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkFaint
        font: Theme.Typo.caption
        text: item.badge
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: item.choose()
    }
}
