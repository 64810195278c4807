import QtQuick
import Varnic.Theme as Theme

/// A button of the note's toolbar, with its label where there is room.
Theme.PlainButton {
    id: button

    property bool labelled
    /// How wide it is with its label.
    readonly property real labelledWidth: metrics.advanceWidth + 2 * Theme.Space.s + 20
    required property string symbol

    Accessible.name: text
    corner: height / 2
    implicitHeight: 32
    implicitWidth: labelled ? labelledWidth : 32

    background: Rectangle {
        color: button.hovered || button.down ? Theme.Palette.washHover : "transparent"
        radius: button.height / 2
    }
    contentItem: Theme.SymbolLabel {
        color: button.hovered || button.visualFocus ? Theme.Palette.ink : Theme.Palette.inkSoft
        font: Theme.Typo.system(13, Font.Medium)
        symbol: button.symbol
        symbolSize: 15
        text: button.labelled ? button.text : ""
    }

    TextMetrics {
        id: metrics

        font: Theme.Typo.system(13, Font.Medium)
        text: button.text
    }
}
