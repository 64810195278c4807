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
        id: arc

        anchors.fill: parent
        color: spinner.color
        name: "progress"
        weight: Font.Bold
    }

    /// In steps: what goes on meanwhile needs the processor.
    Timer {
        interval: 50
        repeat: true
        running: spinner.visible && !Theme.Appearance.reduceMotion

        onTriggered: arc.turn = (arc.turn + 20) % 360
    }
}
