import QtQuick
import Varnic.Theme as Theme

/// The button for everything else, with or without a symbol.
PlainButton {
    id: button

    property bool compact
    /// Whether its text shows beside its symbol; it is its name in any case.
    property bool labelled: true
    /// The width that it has with its text.
    readonly property real labelledWidth: (contentItem as SymbolLabel).labelledWidth + leftPadding + rightPadding
    property string symbol

    bottomPadding: compact ? 3 : 5
    leftPadding: 9
    opacity: enabled ? 1 : 0.45
    rightPadding: 9
    topPadding: compact ? 3 : 5

    background: Rectangle {
        color: button.down || button.hovered ? Theme.Palette.washHover : Theme.Palette.wash
        radius: Theme.Radius.control

        Behavior on color  {
            ColorAnimation {
                duration: Theme.Motion.press
                easing.type: Easing.OutQuad
            }
        }
    }
    contentItem: SymbolLabel {
        font: Theme.Typo.system(button.compact ? 12 : 13, Font.Medium)
        labelled: button.labelled
        symbol: button.symbol
        symbolSize: button.compact ? 11 : 12
        text: button.text
    }
}
