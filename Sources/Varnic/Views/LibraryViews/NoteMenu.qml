import QtQuick
import Varnic.LibraryViews

/// What can be done with a note of the list.
PaperMenu {
    id: menu

    /// Opens at a place of a row that shows a note.
    function show(row: NoteRow, x: real, y: real) {
        if (row && !row.isLive) {
            NoteActions.noteId = row.noteId;
            popup(row, x, y);
        }
    }

    PaperMenuItem {
        text: NoteActions.pinText

        onTriggered: NoteActions.togglePin()
    }

    PaperMenu {
        title: "Export"

        Repeater {
            model: NoteActions.exportTitles

            PaperMenuItem {
                required property int index
                required property string modelData

                text: modelData

                onTriggered: NoteActions.exportAs(index)
            }
        }
    }

    PaperMenuItem {
        enabled: NoteActions.canTranscribe
        height: visible ? implicitHeight : 0
        text: "Transcribe Again"
        visible: NoteActions.canTranscribe

        onTriggered: NoteActions.transcribeAgain()
    }

    MenuRule {
    }

    PaperMenuItem {
        isDestructive: true
        keys: "Del"
        text: "Delete"

        onTriggered: NoteActions.remove()
    }
}
