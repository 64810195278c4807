import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// The title of a note, on as many lines as it takes. Return goes on to the note's first block.
Field {
    id: field

    required property NoteModel note

    Accessible.name: "Title"
    font: Theme.Typo.pageTitle
    hasHistory: false
    placeholder: note.titlePlaceholder
    objectName: "title"
    text: note.title

    onEdited: text => note.title = text
    onRedoWanted: note.redo()
    onUndoWanted: note.undo()
    onReturned: note.focusFirstBlock()
}
