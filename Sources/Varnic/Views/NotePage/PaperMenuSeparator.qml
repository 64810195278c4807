import QtQuick
import QtQuick.Controls.Basic
import Varnic.Theme as Theme

/// A line between groups of a menu.
MenuSeparator {
    height: visible ? implicitHeight : 0

    contentItem: Rectangle {
        color: Theme.Palette.rule
        implicitHeight: 1
    }
}
