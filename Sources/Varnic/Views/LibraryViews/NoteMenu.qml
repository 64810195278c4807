pragma ComponentBehavior
import QtQuick
import QtQuick.Controls.Basic
import Varnic.LibraryViews

/// What can be done with a note of the list.
PaperMenu {
    id: menu

    /// Opens at a place of the row that shows the note.
    function show(note: string, row: Item, x: real, y: real) {
        actions.noteId = note;
        const place = row.mapToItem(parent, x, y);
        popup(place.x, place.y);
    }

    Accessible.name: "Note"

    PaperMenuItem {
        text: actions.pinText

        onTriggered: actions.togglePin()
    }

    PaperMenu {
        id: exports

        title: "Export"

        Repeater {
            model: actions.exportTitles

            PaperMenuItem {
                required property int index
                required property string modelData

                text: modelData

                onTriggered: actions.exportAs(index)
            }
        }
    }

    PaperMenuItem {
        enabled: actions.canTranscribe
        height: visible ? implicitHeight : 0
        text: "Transcribe Again"
        visible: actions.canTranscribe

        onTriggered: actions.transcribeAgain()
    }

    MenuRule {
    }

    PaperMenuItem {
        isDestructive: true
        keys: "Del"
        text: "Delete"

        onTriggered: actions.remove()
    }

    NoteActions {
        id: actions
    }
}
