import QtQuick
import Varnic.NotePage

/// The blocks of a note, one under the other.
Column {
    id: list

    required property NoteModel note

    spacing: 4

    BlocksModel {
        id: blocks

        note: list.note
    }

    Repeater {
        model: blocks

        BlockRow {
            width: list.width

            onToggled: blocks.toggle(index)
        }
    }
}
