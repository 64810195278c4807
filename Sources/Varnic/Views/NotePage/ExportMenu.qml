import QtQuick
import Varnic.NotePage

// What a delegate reads of the file around it: the pragma for that is not whole in Qt 6.4.
// qmllint disable unqualified

/// The files that the note can be written to.
PaperMenu {
    id: exports

    required property NoteModel note

    Instantiator {
        model: exports.note.exportTitles

        PaperMenuItem {
            required property int index
            required property string modelData

            text: modelData

            onTriggered: exports.note.exportAs(index)
        }

        onObjectAdded: (index, object) => exports.insertItem(index, object)
        onObjectRemoved: (index, object) => exports.removeItem(object)
    }

    PaperMenuSeparator {
        visible: exports.note.isCall
    }

    PaperMenuItem {
        enabled: exports.note.tracks.length > 0
        text: "Recording (.m4a)…"
        visible: exports.note.isCall

        onTriggered: exports.note.exportAudio()
    }
}
