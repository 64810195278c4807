import QtQuick
import QtQuick.Controls.Basic
import Varnic.NotePage

/// The files that the note can be written to.
PaperMenu {
    id: menu

    required property NoteModel note

    Instantiator {
        model: menu.note.exportTitles

        PaperMenuItem {
            required property int index
            required property string modelData

            text: modelData

            onTriggered: menu.note.exportAs(index)
        }

        onObjectAdded: (index, object) => menu.insertItem(index, object)
        onObjectRemoved: (index, object) => menu.removeItem(object)
    }

    PaperMenuSeparator {
        visible: menu.note.isCall
    }

    PaperMenuItem {
        enabled: menu.note.tracks.length > 0
        text: "Recording (.m4a)…"
        visible: menu.note.isCall

        onTriggered: menu.note.exportAudio()
    }
}
