import QtQuick
import Varnic.Note

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
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
