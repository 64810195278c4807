import QtQuick
import QtQuick.Controls.Basic
import Varnic.Theme as Theme

/// A line between entries of a menu.
MenuSeparator {
    padding: 5

    contentItem: Rectangle {
        color: Theme.Palette.rule
        implicitHeight: 1
    }
}
