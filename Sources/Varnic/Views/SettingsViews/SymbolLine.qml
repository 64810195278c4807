import QtQuick
import Varnic.Theme as Theme

/// A sentence in small type, with a symbol before it.
Row {
    id: line

    property color color: Theme.Palette.inkSoft
    required property string symbol
    property color symbolColor: color
    required property string text

    Accessible.name: text
    Accessible.role: Accessible.StaticText
    spacing: Theme.Space.s

    Theme.Symbol {
        id: mark

        color: line.symbolColor
        name: line.symbol
        size: 12
    }

    Text {
        Accessible.ignored: true
        color: line.color
        font: Theme.Typo.caption
        text: line.text
        width: line.width - mark.width - line.spacing
        wrapMode: Text.Wrap
    }
}
