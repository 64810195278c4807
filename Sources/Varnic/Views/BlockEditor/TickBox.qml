import QtQuick
import Varnic.Theme as Theme

/// The box of a to-do, with or without its tick.
Item {
    id: box

    required property bool isDone

    Theme.Symbol {
        id: symbol

        anchors.centerIn: parent
        color: Theme.Palette.inkSoft
        name: box.isDone ? "checkmark.square.fill" : "square"
        size: 16

        onNameChanged: replaced.restart()
    }

    NumberAnimation {
        id: replaced

        duration: Theme.Motion.snappy
        easing.type: Theme.Motion.easing
        from: 0.6
        property: "scale"
        target: symbol
        to: 1
    }
}
