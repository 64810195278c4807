import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// The files that the note can be written to.
Theme.PaperMenu {
    id: exports

    required property NoteModel note

    title: "Export"

    Instantiator {
        model: exports.note.exportTitles

        Theme.PaperMenuItem {
            required property int index
            required property string modelData

            text: modelData

            onTriggered: exports.note.exportAs(index)
        }

        onObjectAdded: (index, object) => exports.insertItem(index, object)
        onObjectRemoved: (index, object) => exports.removeItem(object)
    }

    Theme.PaperMenuRule {
        visible: exports.note.isCall
    }

    Theme.PaperMenuItem {
        enabled: exports.note.canExportAudio
        text: "Recording (.m4a)…"
        visible: exports.note.isCall

        onTriggered: exports.note.exportAudio()
    }
}
