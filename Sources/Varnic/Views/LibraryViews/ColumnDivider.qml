import QtQuick
import Varnic.Theme as Theme

/// The hairline between two columns, by which they are made wider: with the pointer, or with the arrow keys.
Rectangle {
    id: divider

    readonly property bool isDragged: drag.active
    /// Whoever was on the way from column to column wants none of its keys later (FocusKeeper).
    readonly property bool isPassedBy: true
    /// Which column it is the edge of, for assistive programs.
    required property string name
    readonly property real step: 10

    /// By so many points to the right, since the last time.
    signal draggedBy(real delta)

    Accessible.focusable: true
    Accessible.name: name
    Accessible.role: Accessible.Splitter
    activeFocusOnTab: true
    color: Theme.Palette.rule
    width: 1

    Accessible.onDecreaseAction: draggedBy(-step)
    Accessible.onIncreaseAction: draggedBy(step)
    Keys.onLeftPressed: draggedBy(-step)
    Keys.onRightPressed: draggedBy(step)

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.Palette.you
        height: parent.height
        visible: divider.activeFocus
        width: 3
    }

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        height: parent.height
        width: 9

        HoverHandler {
            cursorShape: Qt.SplitHCursor
        }

        DragHandler {
            id: drag

            property real last: 0

            cursorShape: Qt.SplitHCursor
            target: null
            yAxis.enabled: false

            onActiveChanged: last = 0
            onTranslationChanged: {
                const delta = translation.x - last;
                last = translation.x;
                divider.draggedBy(delta);
            }
        }
    }
}
