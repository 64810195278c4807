import QtQuick
import Varnic.LiveView
import Varnic.Theme as Theme

/// What is said, as it is said. It follows the call until the user scrolls back, and again from the end on.
Item {
    ListView {
        id: list

        /// Whether the newest line is kept in sight.
        property bool follows: true

        /// Where the view ends now. A binding would still have the end from before while the height is told to have
        /// changed.
        function end(): real {
            return Math.max(contentHeight - height, 0) + originY;
        }

        function toEnd() {
            if (follows && contentHeight > height) {
                scroll.to = end();
                scroll.restart();
            }
        }

        /// Scrolls for the user, who decides by that whether the end is followed.
        function scrollBy(points: real) {
            scroll.stop();
            contentY = Math.min(Math.max(contentY + points, originY), end());
            follows = contentY >= end() - 1;
        }

        Accessible.name: "Transcript"
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 1000
        clip: true
        model: LiveCall.transcript
        objectName: "transcript"
        spacing: Theme.Space.l

        delegate: LiveTurn {
        }
        footer: Item {
            height: 40
            width: 1
        }
        header: Item {
            height: Theme.Space.xl
            width: 1
        }

        Keys.onDownPressed: scrollBy(60)
        Keys.onUpPressed: scrollBy(-60)
        onContentHeightChanged: toEnd()
        onHeightChanged: toEnd()
        onMovementEnded: follows = atYEnd
        onMovementStarted: scroll.stop()
        onOriginYChanged: toEnd()

        NumberAnimation {
            id: scroll

            duration: Theme.Appearance.reduceMotion ? 0 : 250
            easing.type: Easing.OutQuad
            property: "contentY"
            target: list
        }

        WheelHandler {
            onWheel: event => list.scrollBy(-event.angleDelta.y)
        }
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 6
        topPadding: Theme.Space.xl
        visible: LiveCall.transcript.count === 0
        width: Math.min(parent.width, 760) - 2 * Theme.Space.xl

        Theme.Label {
            color: Theme.Palette.inkSoft
            font: Theme.Typo.heading
            text: LiveCall.placeholderTitle
            width: parent.width
            wrapMode: Text.Wrap
        }

        Theme.Label {
            color: Theme.Palette.inkFaint
            font: Theme.Typo.body
            text: LiveCall.placeholder
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
