import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// One block of a note, with its handle. A text stays the same editor whatever kind of text it becomes, so that typing
/// goes on in it. The list gives the focus to its current row, so that is the focus scope.
FocusScope {
    id: row

    required property string back
    required property string blockId
    required property string cardText
    required property tableWords cells
    required property real columnWidth
    required property string due
    readonly property real gap: kind === "heading" ? Theme.Space.l : kind === "subheading" ? Theme.Space.s : 0
    required property int index
    required property bool isDone
    required property bool isRightToLeft
    readonly property bool isText: kind !== "table" && kind !== "flashcard" && kind !== "divider"
    required property bool isYours
    required property string kind
    required property string kindTitle
    required property string ownerName
    required property string placeholder
    required property EditorSurface surface
    required property string words

    signal addColumnWanted
    signal addRowWanted
    signal optionsWanted(Item item)
    signal removeColumnWanted(int column)
    signal removeRowWanted(int tableRow)
    signal toggled

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: isRightToLeft
    implicitHeight: gap + (isText ? line.implicitHeight : special.implicitHeight) + 4

    // Of the block, where nothing in it has a menu of its own.
    Keys.onPressed: event => {
        if (Theme.MenuKey.isPressed(event) || Theme.MenuKey.isPressedForOuter(event)) {
            row.optionsWanted(column);
            event.accepted = true;
        }
    }

    HoverHandler {
        id: hover
    }

    BlockHandle {
        anchors.right: column.left
        anchors.rightMargin: 8
        anchors.top: parent.top
        anchors.topMargin: row.gap + (row.kind === "heading" || row.kind === "table" ? 6 : row.kind === "subheading" ? 3 : 2)
        index: row.index
        surface: row.surface
        visible: hover.hovered || isDragged || row.activeFocus

        onClicked: row.optionsWanted(this)
    }

    Item {
        id: column

        height: parent.height - row.gap
        width: row.columnWidth
        x: (row.width - width) / 2
        y: row.gap

        TextBlock {
            id: line

            blockId: row.blockId
            due: row.due
            focus: row.isText
            isDone: row.isDone
            isYours: row.isYours
            kind: row.kind
            kindTitle: row.kindTitle
            ownerName: row.ownerName
            placeholder: row.placeholder
            surface: row.surface
            visible: row.isText
            width: parent.width
            words: row.words

            onToggled: row.toggled()
        }

        Loader {
            id: special

            active: !row.isText
            focus: !row.isText
            sourceComponent: row.kind === "table" ? table : row.kind === "flashcard" ? flashcard : divider
            width: parent.width
        }
    }

    Component {
        id: divider

        DividerBlock {
            blockId: row.blockId
            surface: row.surface
        }
    }

    Component {
        id: flashcard

        FlashcardBlock {
            back: row.back
            blockId: row.blockId
            cardText: row.cardText
            front: row.words
            surface: row.surface
        }
    }

    Component {
        id: table

        TableBlock {
            blockId: row.blockId
            cells: row.cells
            surface: row.surface

            onAddColumnWanted: row.addColumnWanted()
            onAddRowWanted: row.addRowWanted()
            onOptionsWanted: row.optionsWanted(column)
            onRemoveColumnWanted: column => row.removeColumnWanted(column)
            onRemoveRowWanted: tableRow => row.removeRowWanted(tableRow)
        }
    }
}
