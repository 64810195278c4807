import QtQuick
import Varnic.NotePage

/// What else can be done with the note.
PaperMenu {
    id: menu

    required property NoteModel note

    PaperMenuItem {
        text: menu.note.pinned ? "Unpin" : "Pin to Top"

        onTriggered: menu.note.togglePin()
    }

    PaperMenuItem {
        enabled: menu.note.tracks.length > 0
        text: "Transcribe Again"
        visible: menu.note.isCall

        onTriggered: menu.note.retranscribe()
    }

    PaperMenuItem {
        enabled: menu.note.tracks.length > 0
        text: "Remove Audio, Keep Transcript"
        visible: menu.note.isCall

        onTriggered: menu.note.removeAudio()
    }

    PaperMenuSeparator {
    }

    PaperMenuItem {
        destructive: true
        enabled: menu.note.canDelete
        text: "Delete Note"

        onTriggered: menu.note.remove()
    }
}
