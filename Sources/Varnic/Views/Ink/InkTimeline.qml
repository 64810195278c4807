import QtQuick
import Varnic.Ink
import Varnic.Theme as Theme

/// Who spoke when in a finished call, where the player is, and the way to another moment: by a click, or by a drag along
/// what was said.
Item {
    id: timeline

    required property callInk call
    /// Where the player is, in seconds; below 0 where nothing is played.
    property real position: -1
    /// Where the pointer is, and what a press or the end of a drag goes to, in seconds.
    readonly property real pointedTime: call.timeAt(drag.active ? drag.centroid.position.x : hover.point.position.x, width)
    /// Whether a moment can be chosen.
    property bool seekable: true

    // What assistive programs read of a slider.
    readonly property real maximumValue: call.duration
    readonly property real minimumValue: 0
    readonly property real stepSize: 5
    readonly property real value: Math.max(position, 0)

    /// The user wants to hear the call from there, in seconds.
    signal seek(real time)

    function stepBy(seconds: real) {
        seekTo(call.step(value, seconds));
    }

    function seekTo(time: real) {
        if (seekable && call.duration > 0)
            seek(time);
    }

    Accessible.description: "Click to play from that moment"
    Accessible.focusable: seekable
    Accessible.name: "Call timeline"
    Accessible.role: Accessible.Slider
    activeFocusOnTab: seekable && call.duration > 0
    implicitHeight: 44

    Accessible.onDecreaseAction: stepBy(-stepSize)
    Accessible.onIncreaseAction: stepBy(stepSize)
    Keys.onLeftPressed: stepBy(-stepSize)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            seekTo(event.key === Qt.Key_Home ? 0 : call.duration);
            event.accepted = true;
        }
    }
    Keys.onRightPressed: stepBy(stepSize)

    InkSignature {
        anchors.fill: parent
        call: timeline.call
        quiet: Qt.alpha(Theme.Palette.inkFaint, 0.45)
        them: Theme.Palette.them
        you: Theme.Palette.you
    }

    Rectangle {
        color: Qt.alpha(Theme.Palette.ink, 0.7)
        height: parent.height
        objectName: "position"
        visible: timeline.position >= 0 && timeline.call.duration > 0
        width: 1.5
        x: timeline.call.xOf(drag.active ? timeline.pointedTime : timeline.position, timeline.width) - width / 2
    }

    Rectangle {
        id: label

        readonly property real pointedX: timeline.call.xOf(timeline.pointedTime, timeline.width)

        color: Theme.Palette.surface
        height: stamp.implicitHeight + 2
        objectName: "hoverLabel"
        radius: height / 2
        visible: (hover.hovered || drag.active) && timeline.call.duration > 0
        width: line.width + 8
        x: Math.min(Math.max(pointedX - 16, 0), timeline.width - Math.max(width, 40))
        y: -height / 2 - 6

        Row {
            id: line

            anchors.centerIn: parent
            spacing: 6

            Text {
                id: stamp

                color: Theme.Palette.inkSoft
                font: Theme.Typo.stamp
                text: timeline.call.stamp(timeline.pointedTime)
            }

            Text {
                anchors.baseline: stamp.baseline
                color: timeline.call.isYoursAt(timeline.pointedTime) ? Theme.Palette.you : Theme.Palette.them
                elide: Text.ElideRight
                font: Theme.Typo.caption
                objectName: "hoverWords"
                text: label.visible ? timeline.call.wordsAt(timeline.pointedTime) : ""
                textFormat: Text.PlainText
                visible: text !== ""
                width: Math.min(implicitWidth, 320, timeline.width - stamp.width - 24)
            }
        }
    }

    Loader {
        active: timeline.activeFocus
        anchors.fill: parent

        sourceComponent: Theme.FocusRing {
        }
    }

    HoverHandler {
        id: hover

        cursorShape: timeline.seekable ? Qt.PointingHandCursor : Qt.ArrowCursor
    }

    TapHandler {
        onTapped: eventPoint => timeline.seekTo(timeline.call.timeAt(eventPoint.position.x, timeline.width))
    }

    DragHandler {
        id: drag

        property real lastTime

        enabled: timeline.seekable
        // Not for the page to scroll with.
        grabPermissions: PointerHandler.CanTakeOverFromAnything
        target: null

        onActiveChanged: if (!active)
            timeline.seekTo(lastTime)
        onCentroidChanged: if (active)
            lastTime = timeline.call.timeAt(centroid.position.x, timeline.width)
    }
}
