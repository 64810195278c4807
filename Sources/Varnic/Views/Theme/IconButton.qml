import QtQuick
import Varnic.Theme as Theme

/// A round button that shows a symbol only.
PlainButton {
    id: button

    /// Its diameter, in points.
    property real size: 28
    required property string symbol

    Accessible.description: ""
    Accessible.name: help
    corner: size / 2
    implicitHeight: size
    implicitWidth: size
    opacity: enabled ? 1 : 0.45

    background: Rectangle {
        color: button.hovered || button.down ? Theme.Palette.washHover : "transparent"
        radius: button.size / 2
    }
    contentItem: Item {
        Theme.Symbol {
            anchors.centerIn: parent
            color: button.hovered || button.visualFocus ? Theme.Palette.ink : Theme.Palette.inkSoft
            name: button.symbol
            size: button.size * 0.46
            weight: Font.Medium
        }
    }
}
