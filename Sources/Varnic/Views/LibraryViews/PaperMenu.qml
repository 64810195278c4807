import QtQuick
import QtQuick.Controls.Basic
import Varnic.Theme as Theme

/// A menu on paper.
Menu {
    id: menu

    cascade: true
    delegate: PaperMenuItem {
    }
    margins: 6
    overlap: 2
    padding: 5

    background: Rectangle {
        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.surface
        implicitWidth: 230
        radius: Theme.Radius.control

        Theme.Shadow {
            height: parent.height + 2 * blur
            radius: Theme.Radius.control
            width: parent.width + 2 * blur
            x: -blur
            y: 3 - blur
            z: -1
        }
    }
}
