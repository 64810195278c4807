import QtQuick
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// One block of a note.
Loader {
    id: row

    required property string back
    required property string cardText
    required property list<string> cells
    required property int columns
    required property string due
    required property int index
    required property bool isDone
    required property bool isYours
    required property string kind
    required property string kindTitle
    required property string ownerName
    required property string words

    signal toggled

    sourceComponent: {
        switch (kind) {
        case "table":
            return table;
        case "flashcard":
            return flashcard;
        case "divider":
            return divider;
        case "todo":
            return todo;
        default:
            return line;
        }
    }

    Component {
        id: line

        TextBlock {
            kind: row.kind
            kindTitle: row.kindTitle
            words: row.words
        }
    }

    Component {
        id: todo

        TodoBlock {
            due: row.due
            isDone: row.isDone
            isYours: row.isYours
            ownerName: row.ownerName
            words: row.words

            onToggled: row.toggled()
        }
    }

    Component {
        id: flashcard

        Item {
            implicitHeight: card.implicitHeight + 2 * card.y

            FlashcardBlock {
                id: card

                back: row.back
                cardText: row.cardText
                front: row.words
                width: parent.width
                y: 6
            }
        }
    }

    Component {
        id: table

        Item {
            implicitHeight: grid.implicitHeight + 2 * grid.y

            TableBlock {
                id: grid

                cells: row.cells
                columns: row.columns
                width: parent.width
                y: 6
            }
        }
    }

    Component {
        id: divider

        Item {
            Accessible.name: "Divider"
            Accessible.role: Accessible.Separator
            implicitHeight: 2 * Theme.Space.m + 1

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.Palette.rule
                height: 1
                width: parent.width
            }
        }
    }
}
