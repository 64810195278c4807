import QtQuick
import Varnic.Theme as Theme

/// Takes a notice up into sight from the edge below, or back down.
ParallelAnimation {
    id: motion

    required property bool isShown
    required property Item target

    NumberAnimation {
        duration: Theme.Motion.snappy
        easing.type: Theme.Motion.easing
        from: motion.isShown ? 40 : 0
        property: "y"
        target: motion.target
        to: motion.isShown ? 0 : 40
    }

    NumberAnimation {
        duration: Theme.Motion.snappy
        from: motion.isShown ? 0 : motion.target.opacity
        property: "opacity"
        target: motion.target
        to: motion.isShown ? 1 : 0
    }
}
