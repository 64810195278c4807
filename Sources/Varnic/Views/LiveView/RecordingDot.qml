import QtQuick
import Varnic.LiveView
import Varnic.Theme as Theme

/// The red dot of a running recording, with a ring that spreads and vanishes in the steps of the ink: an animation of
/// its own would have the window drawn three times as often. It stands still while nothing is recorded.
Item {
    id: dot

    property real size: 9
    /// How far the ring has spread, 0 to 1.
    readonly property real pulse: Theme.Appearance.reduceMotion ? 0 : LiveCall.pulse

    Accessible.name: "Recording"
    Accessible.role: Accessible.Graphic
    implicitHeight: size
    implicitWidth: size

    Rectangle {
        anchors.centerIn: parent
        border.color: Theme.Palette.record
        border.width: 3
        color: "transparent"
        height: dot.size
        opacity: 0.35 * (1 - dot.pulse)
        radius: dot.size / 2
        scale: 1 + 0.9 * dot.pulse
        visible: dot.pulse > 0
        width: dot.size
    }

    Rectangle {
        anchors.centerIn: parent
        color: Theme.Palette.record
        height: dot.size
        radius: dot.size / 2
        width: dot.size
    }
}
