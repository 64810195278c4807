import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

/// A question and its answer.
Item {
    id: block

    required property string back
    required property string blockId
    required property string cardText
    required property string front
    required property EditorSurface surface

    implicitHeight: card.implicitHeight + 12

    component Side: Item {
        id: side

        required property string blockId
        property alias color: letter.color
        property alias isCovered: words.isCovered
        property alias letter: letter.text
        property alias name: words.placeholder
        property alias part: words.part
        required property string stored
        required property EditorSurface surface

        implicitHeight: words.implicitHeight + 2 * Theme.Space.m

        Text {
            id: letter

            Accessible.ignored: true
            anchors.baseline: words.baseline
            anchors.left: parent.left
            anchors.leftMargin: Theme.Space.m
            font: Theme.Typo.system(11, Font.Bold)
        }

        TextLine {
            id: words

            Accessible.name: side.name
            anchors.left: letter.right
            anchors.leftMargin: Theme.Space.s
            anchors.right: parent.right
            anchors.rightMargin: Theme.Space.m
            blockId: side.blockId
            stored: side.stored
            surface: side.surface
            y: Theme.Space.m
        }
    }

    Rectangle {
        id: card

        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.surface
        implicitHeight: Math.max(question.implicitHeight, answer.implicitHeight) + (footer.visible ? footer.implicitHeight : 0)
        radius: Theme.Radius.card
        width: parent.width
        y: 6

        Rectangle {
            anchors.fill: parent
            color: Theme.Palette.youWash
            radius: parent.radius
            visible: question.isCovered
        }

        Side {
            id: question

            anchors.left: parent.left
            blockId: block.blockId
            color: Theme.Palette.you
            letter: "Q"
            name: "Question"
            part: 0
            stored: block.front
            surface: block.surface
            width: (card.width - 1) / 2
        }

        Rectangle {
            color: Theme.Palette.rule
            height: card.height
            width: 1
            x: (card.width - 1) / 2
        }

        Side {
            id: answer

            anchors.right: parent.right
            blockId: block.blockId
            color: Theme.Palette.them
            letter: "A"
            name: "Answer"
            part: 1
            stored: block.back
            surface: block.surface
            width: (card.width - 1) / 2
        }

        Theme.Label {
            id: footer

            anchors.bottom: parent.bottom
            anchors.right: parent.right
            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            padding: 6
            rightPadding: Theme.Space.m
            text: block.cardText
            topPadding: 0
            visible: text !== ""
        }
    }
}
