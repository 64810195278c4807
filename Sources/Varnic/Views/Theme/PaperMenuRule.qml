import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A line between entries of a menu. One that is not visible takes no place.
T.MenuSeparator {
    height: visible ? implicitHeight : 0
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth
    padding: 5

    contentItem: Rectangle {
        color: Theme.Palette.rule
        implicitHeight: 1
    }
}
