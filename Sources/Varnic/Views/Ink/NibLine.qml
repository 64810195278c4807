import QtQuick
import Varnic.Ink
import Varnic.Theme as Theme

/// The live line of ink, with a nib that writes it.
Item {
    id: line

    /// How far full level swings, in points.
    property real amplitude: height * 0.36
    required property InkHistory history
    property bool showNib

    Accessible.description: trail.speaking
    Accessible.name: "Live ink line"
    Accessible.role: Accessible.Graphic

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }

    InkTrail {
        id: trail

        amplitude: line.amplitude
        anchors.fill: parent
        history: line.history
        quiet: Qt.alpha(Theme.Palette.inkFaint, 0.6)
        showNib: line.showNib
        them: Theme.Palette.them
        you: Theme.Palette.you
    }

    WritingNib {
        color: trail.leader === InkTrail.You ? Theme.Palette.you : trail.leader === InkTrail.Them ? Theme.Palette.them : Theme.Palette.ink
        paper: Theme.Palette.paper
        visible: line.showNib
        // The tip of a nib that leans to the right is at the head of the line.
        x: trail.head.x + 11 - width / 2
        y: trail.head.y - 13 - height / 2
    }
}
