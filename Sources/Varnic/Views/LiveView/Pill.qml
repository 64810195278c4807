import QtQuick
import Varnic.LiveView

/// The floating window that shows a running recording over all other windows.
PillWindow {
    id: pill

    title: "Varnic is recording"

    RecordingPill {
        anchors.fill: parent
    }

    DragHandler {
        target: null

        onActiveChanged: {
            if (active)
                pill.move();
        }
    }
}
