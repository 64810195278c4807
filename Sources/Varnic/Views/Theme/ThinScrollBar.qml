import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A thin bar at an edge of what scrolls, seen while it is used.
T.ScrollBar {
    id: bar

    Accessible.ignored: true
    implicitHeight: 8
    implicitWidth: 8
    minimumSize: 0.08
    padding: 1
    visible: size < 1

    contentItem: Rectangle {
        color: Theme.Palette.inkFaint
        implicitWidth: 6
        opacity: bar.pressed ? 0.8 : bar.hovered || bar.active ? 0.5 : 0
        radius: 3
    }
}
