import QtQuick
import Varnic.Note

// What a delegate reads of the file around it: the pragma for that is not whole in Qt 6.4.
// qmllint disable unqualified

/// The blocks of a note, one under the other.
Column {
    id: list

    required property NoteModel note

    spacing: 4

    Repeater {
        model: BlocksModel {
            id: blocks

            note: list.note
        }

        BlockRow {
            width: list.width

            onToggled: blocks.toggle(index)
        }
    }
}
