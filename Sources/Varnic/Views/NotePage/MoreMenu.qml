import QtQuick
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

/// What else can be done with the note.
Theme.PaperMenu {
    id: menu

    required property NoteModel note
    required property CallPlayer player

    title: "More"

    Theme.PaperMenuItem {
        text: menu.note.pinned ? "Unpin" : "Pin to Top"

        onTriggered: menu.note.togglePin()
    }

    Theme.PaperMenuItem {
        text: menu.note.isCall && menu.player.time >= 1 ? "Copy Link to " + menu.player.stamp : "Copy Link"

        onTriggered: menu.note.copyLink(menu.player.time)
    }

    Theme.PaperMenuItem {
        enabled: menu.note.canTranscribe
        text: "Transcribe Again"
        visible: menu.note.isCall

        onTriggered: menu.note.retranscribe()
    }

    Theme.PaperMenuItem {
        enabled: menu.note.canBringBackEarlier
        text: "Bring Back Earlier Version"
        visible: menu.note.isCall && menu.note.hasEarlier

        onTriggered: menu.note.bringBackEarlier()
    }

    Theme.PaperMenuItem {
        enabled: menu.note.canRemoveAudio
        objectName: "removeAudio"
        text: "Remove Audio, Keep Transcript"
        visible: menu.note.isCall

        onTriggered: menu.note.removeAudio()
    }

    Theme.PaperMenuRule {
    }

    Theme.PaperMenuItem {
        isDestructive: true
        enabled: menu.note.canDelete
        text: "Delete Note"

        onTriggered: menu.note.remove()
    }
}
