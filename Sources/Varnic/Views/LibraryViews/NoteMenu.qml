import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// What can be done with a note of the list.
Theme.PaperMenu {
    id: menu

    title: "Note"

    /// Opens at a place of a row that shows a note.
    function show(row: NoteRow, x: real, y: real) {
        if (row && !row.isLive) {
            NoteActions.noteId = row.noteId;
            popup(row, x, y);
        }
    }

    Theme.PaperMenuItem {
        text: NoteActions.pinText

        onTriggered: NoteActions.togglePin()
    }

    Theme.PaperMenu {
        title: "Export"

        Repeater {
            model: NoteActions.exportTitles

            Theme.PaperMenuItem {
                required property int index
                required property string modelData

                text: modelData

                onTriggered: NoteActions.exportAs(index)
            }
        }
    }

    Theme.PaperMenuItem {
        text: "Copy Link"

        onTriggered: NoteActions.copyLink()
    }

    Theme.PaperMenuItem {
        enabled: NoteActions.canTranscribe
        text: "Transcribe Again"
        visible: NoteActions.hasAudio

        onTriggered: NoteActions.transcribeAgain()
    }

    Theme.PaperMenuRule {
    }

    Theme.PaperMenuItem {
        isDestructive: true
        keys: "Del"
        text: "Delete"

        onTriggered: NoteActions.remove()
    }
}
