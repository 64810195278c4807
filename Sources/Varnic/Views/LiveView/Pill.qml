import QtQuick
import Varnic.LiveView
import Varnic.Theme as Theme

/// The floating window that shows a running recording over all other windows.
PillWindow {
    id: pill

    // What is cut off must not be transparent: along the outline some of it shows.
    color: isTranslucent ? "transparent" : Theme.Palette.surface
    title: "Varnic is recording"

    RecordingPill {
        id: content

        anchors.fill: parent
    }

    DragHandler {
        id: drag

        target: null

        onActiveChanged: {
            if (active)
                pill.follow(centroid.scenePressPosition);
        }
    }

    PillTip {
        owner: pill
        text: content.help
        wanted: content.wantsHelp && pill.visible && !drag.active
    }
}
