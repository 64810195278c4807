import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// What is known of the note as a text.
Flow {
    id: footer

    required property NoteModel note

    spacing: Theme.Space.s
    topPadding: Theme.Space.xxl

    Repeater {
        model: footer.note.footer

        Theme.Label {
            required property string modelData

            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            text: modelData
        }
    }
}
