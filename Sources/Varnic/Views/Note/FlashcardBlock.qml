import QtQuick
import Varnic.Theme as Theme

/// A question and its answer.
Rectangle {
    id: block

    required property string back
    required property string cardText
    required property string front

    border.color: Theme.Palette.rule
    border.width: 1
    color: Theme.Palette.surface
    implicitHeight: Math.max(question.implicitHeight, answer.implicitHeight) + footer.height
    radius: Theme.Radius.card

    component Side: Row {
        id: side

        property alias color: letter.color
        property alias letter: letter.text
        property string words

        padding: Theme.Space.m
        spacing: Theme.Space.s

        Text {
            id: letter

            Accessible.ignored: true
            anchors.baseline: words.baseline
            font: Theme.Typo.system(11, Font.Bold)
        }

        ReadText {
            id: words

            Accessible.description: side.letter === "Q" ? "Question" : "Answer"
            text: side.words
            width: side.width - letter.width - side.spacing - 2 * side.padding
        }
    }

    Row {
        id: sides

        Side {
            id: question

            color: Theme.Palette.you
            letter: "Q"
            width: (block.width - 1) / 2
            words: block.front
        }

        Rectangle {
            color: Theme.Palette.rule
            height: block.height
            width: 1
        }

        Side {
            id: answer

            color: Theme.Palette.them
            letter: "A"
            width: (block.width - 1) / 2
            words: block.back
        }
    }

    Theme.Label {
        id: footer

        anchors.bottom: parent.bottom
        anchors.right: parent.right
        color: Theme.Palette.inkFaint
        font: Theme.Typo.caption
        height: visible ? implicitHeight : 0
        padding: 6
        rightPadding: Theme.Space.m
        text: block.cardText
        topPadding: 0
        visible: text !== ""
    }
}
