import QtQuick
import Varnic.Theme as Theme

/// A section of the sidebar.
Item {
    id: item

    required property string badge
    required property int index
    property bool isCurrent
    property bool isFocused
    required property string symbol
    required property string title

    signal chosen

    Accessible.description: badge
    Accessible.focusable: true
    Accessible.focused: isCurrent && isFocused
    Accessible.name: title
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: isCurrent
    implicitHeight: 30

    Accessible.onPressAction: chosen()

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
        name: item.symbol
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
        onTapped: item.chosen()
    }
}
