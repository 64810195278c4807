import QtQuick
import Varnic.Theme as Theme

/// A block that is a text: a paragraph, a heading, a list item, a quote.
Item {
    id: block

    readonly property bool isBullet: kind === "bullet"
    readonly property bool isQuote: kind === "quote"
    required property string kind
    required property string kindTitle
    required property string words

    implicitHeight: label.y + label.implicitHeight

    Text {
        Accessible.ignored: true
        color: Theme.Palette.inkSoft
        font: Theme.Typo.body
        text: "•"
        visible: block.isBullet
        x: 4
    }

    Rectangle {
        color: Theme.Palette.inkFaint
        height: parent.height
        radius: 1
        visible: block.isQuote
        width: 2
    }

    ReadText {
        id: label

        Accessible.description: block.kindTitle
        color: block.isQuote ? Theme.Palette.inkSoft : Theme.Palette.ink
        font: {
            switch (block.kind) {
            case "heading":
                return Theme.Typo.heading;
            case "subheading":
                return Theme.Typo.subheading;
            case "quote":
                return Theme.Typo.bodyItalic;
            default:
                return Theme.Typo.body;
            }
        }
        text: block.words
        width: parent.width - x
        x: block.isBullet ? 20 : block.isQuote ? 12 : 0
        y: block.kind === "heading" ? Theme.Space.l : block.kind === "subheading" ? Theme.Space.s : 0
    }
}
