import QtQuick
import QtQuick.Controls.Basic
import Varnic.Theme as Theme

/// A menu in the look of the page, as wide as its longest item.
Menu {
    id: menu

    implicitWidth: 240
    padding: 5

    background: Rectangle {
        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.surface
        implicitWidth: 240
        radius: Theme.Radius.control
    }
}
