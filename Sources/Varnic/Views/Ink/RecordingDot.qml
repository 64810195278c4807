import QtQuick
import Varnic.Theme as Theme

/// The red dot of a running recording, with a ring that spreads and vanishes.
Item {
    id: dot

    /// Whether sound is being recorded now; the ring stands still otherwise.
    property bool active: true
    property real size: 9
    /// How far the ring has spread, 0 to 1.
    property real pulse

    Accessible.name: "Recording"
    Accessible.role: Accessible.Indicator
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
        width: dot.size
    }

    Rectangle {
        anchors.centerIn: parent
        color: Theme.Palette.record
        height: dot.size
        radius: dot.size / 2
        width: dot.size
    }

    NumberAnimation on pulse  {
        duration: 1100
        easing.type: Easing.OutQuad
        from: 0
        loops: Animation.Infinite
        running: dot.active && dot.visible && !Theme.Appearance.reduceMotion
        to: 1

        onStopped: dot.pulse = 0
    }
}
