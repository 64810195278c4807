import QtQuick
import Varnic.Theme as Theme

/// A line whose digits are all as wide as the widest of them, so that a clock does not fidget. Qt 6.4 can't ask a font
/// for its own tabular digits.
Row {
    id: line

    property color color: Theme.Palette.ink
    readonly property real digitWidth: Math.max(...Array.from("0123456789", digit => metrics.advanceWidth(digit)))
    property font font: Theme.Typo.ui
    /// Single digits, and what stands between them.
    readonly property list<string> parts: text.match(/[0-9]|[^0-9]+/g) ?? []
    property string text

    FontMetrics {
        id: metrics

        font: line.font
    }

    Repeater {
        model: line.parts.length

        Text {
            required property int index
            readonly property bool isDigit: text >= "0" && text <= "9"

            Accessible.ignored: true
            color: line.color
            font: line.font
            horizontalAlignment: isDigit ? Text.AlignHCenter : Text.AlignLeft
            text: line.parts[index] ?? ""
            textFormat: Text.PlainText
            width: isDigit ? line.digitWidth : metrics.advanceWidth(text)
        }
    }
}
