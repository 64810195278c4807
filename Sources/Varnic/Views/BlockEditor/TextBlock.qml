import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

/// A block that is a text: a paragraph, a heading, a to-do, a list item, a quote.
FocusScope {
    id: block

    required property string blockId
    required property string due
    readonly property real inset: kind === "bullet" ? 20 : kind === "quote" ? 12 : kind === "todo" ? 28 : 0
    required property bool isDone
    required property bool isYours
    required property string kind
    required property string kindTitle
    required property string ownerName
    required property string placeholder
    required property EditorSurface surface
    required property string words

    signal toggled

    // Below the title, which is the first level.
    Accessible.description: kind === "heading" ? "Level 2" : "Level 3"
    Accessible.ignored: words === "" || (kind !== "heading" && kind !== "subheading")
    Accessible.name: words
    Accessible.role: Accessible.Heading
    implicitHeight: Math.max(line.implicitHeight, tags.implicitHeight)

    BlockMark {
        anchors.left: parent.left
        height: parent.height
        isDone: block.isDone
        kind: block.kind
        words: block.words

        onToggled: block.toggled()
    }

    TextLine {
        id: line

        Accessible.name: block.kindTitle
        anchors.left: parent.left
        anchors.leftMargin: block.inset
        anchors.right: tags.left
        anchors.rightMargin: tags.active ? Theme.Space.s : 0
        blockId: block.blockId
        color: block.kind === "quote" ? Theme.Palette.inkSoft : block.isDone ? Theme.Palette.inkFaint : Theme.Palette.ink
        focus: true
        font: {
            switch (block.kind) {
            case "heading":
                return Theme.Typo.heading;
            case "subheading":
                return Theme.Typo.subheading;
            case "quote":
                return Theme.Typo.bodyItalic;
            case "todo":
                return block.isDone ? Theme.Typo.bodyDone : Theme.Typo.body;
            default:
                return Theme.Typo.body;
            }
        }
        placeholder: block.placeholder
        placeholderShown: block.kind !== "paragraph" || activeFocus
        stored: block.words
        surface: block.surface
    }

    BlockTags {
        id: tags

        anchors.right: parent.right
        due: block.due
        isYours: block.isYours
        ownerName: block.ownerName
    }
}
