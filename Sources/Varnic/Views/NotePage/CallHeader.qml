import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// When the call was.
Item {
    required property NoteModel note

    implicitHeight: eyebrow.implicitHeight + Theme.Space.s

    Theme.Eyebrow {
        id: eyebrow

        text: parent.note.eyebrow
    }
}
