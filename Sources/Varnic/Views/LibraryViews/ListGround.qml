import QtQuick
import Varnic.Theme as Theme

/// The ground of a row of a list: a wash under the selected one, in your ink while the keyboard is on the list.
Rectangle {
    property bool isCurrent
    property bool isFocused
    property bool isHovered

    border.color: Theme.Palette.you
    border.width: isCurrent && isFocused ? 1 : 0
    color: isCurrent ? (isFocused ? Theme.Palette.youWash : Theme.Palette.washHover) : isHovered ? Theme.Palette.rule : "transparent"
    radius: Theme.Radius.control
}
