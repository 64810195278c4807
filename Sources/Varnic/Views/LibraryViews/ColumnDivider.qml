import QtQuick
import Varnic.Theme as Theme

/// The hairline between two columns, by which they are made wider.
Rectangle {
    id: divider

    readonly property bool isDragged: drag.active

    /// By so many points to the right, since the last time.
    signal draggedBy(real delta)

    color: Theme.Palette.rule
    width: 1

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
