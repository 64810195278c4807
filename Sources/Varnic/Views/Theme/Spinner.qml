import QtQuick
import Varnic.Theme as Theme

/// Something is going on. It stands still where motion is reduced.
Item {
    id: spinner

    property color color: Theme.Palette.inkSoft
    property real size: 16

    Accessible.name: "In progress"
    Accessible.role: Accessible.Animation
    implicitHeight: size
    implicitWidth: size

    Theme.Symbol {
        anchors.fill: parent
        color: spinner.color
        name: "progress"

        RotationAnimator on rotation  {
            duration: 900
            from: 0
            loops: Animation.Infinite
            running: spinner.visible && !Theme.Appearance.reduceMotion
            to: 360
        }
    }
}
