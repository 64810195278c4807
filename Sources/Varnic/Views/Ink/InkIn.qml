import QtQuick
import Varnic.Theme as Theme

/// Covers a word that is being written, and uncovers it from left to right with a soft edge. A cover rather than a
/// mask, since not every way of drawing has masks; what it covers never changes its form.
Item {
    id: cover

    /// Milliseconds until the word stands.
    required property int duration
    property int delay: 0
    /// What the word is written on.
    property color ground: Theme.Palette.paper
    /// How much is written: 0 to 1.2, since the soft edge follows.
    property real shown: Theme.Appearance.reduceMotion ? 1.2 : 0
    // The edge is to leave the word altogether.
    readonly property real reach: width * 1.15
    readonly property real edge: Math.max(shown - 0.12, 0) * reach

    clip: true
    visible: edge < width

    Rectangle {
        id: soft

        height: parent.height
        width: cover.shown * cover.reach - x
        x: cover.edge

        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                color: Qt.alpha(cover.ground, 0)
                position: 0
            }

            GradientStop {
                color: cover.ground
                position: 1
            }
        }
    }

    Rectangle {
        anchors.left: soft.right
        color: cover.ground
        height: parent.height
        width: cover.width
    }

    SequentialAnimation {
        running: !Theme.Appearance.reduceMotion

        PauseAnimation {
            duration: cover.delay
        }

        NumberAnimation {
            duration: cover.duration
            easing.type: Easing.OutQuad
            property: "shown"
            target: cover
            to: 1.2
        }
    }
}
