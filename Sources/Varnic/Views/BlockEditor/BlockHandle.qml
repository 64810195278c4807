import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

/// Left of a block: its options, and a grip to move it by.
Theme.PlainButton {
    id: handle

    required property int index
    readonly property alias isDragged: drag.active
    required property EditorSurface surface

    Accessible.name: "Block options"
    corner: 4
    focusPolicy: Qt.NoFocus
    help: "Block options"
    implicitHeight: 16
    implicitWidth: 16
    objectName: "blockHandle"

    background: Rectangle {
        color: handle.hovered || handle.down ? Theme.Palette.washHover : "transparent"
        radius: 4
    }
    contentItem: Item {
        Theme.Symbol {
            anchors.centerIn: parent
            color: Theme.Palette.inkFaint
            name: "line.3.horizontal"
            size: 10
            weight: Font.DemiBold
        }
    }

    DragHandler {
        id: drag

        cursorShape: Qt.ClosedHandCursor
        target: null

        onActiveChanged: {
            if (!active) {
                handle.surface.drop(handle.index);
            }
        }
        onCentroidChanged: {
            if (active) {
                handle.surface.dragTo(handle.mapToItem(handle.surface, centroid.position).y);
            }
        }
    }
}
