import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// What can be done with the follow-up email; with symbols alone where there is little room.
Row {
    id: actions

    required property bool labelled
    /// The width that they have with their texts.
    readonly property real labelledWidth: copy.labelledWidth + spacing + open.labelledWidth
    required property NoteModel note

    objectName: "emailActions"
    spacing: Theme.Space.s

    Theme.QuietButton {
        id: copy

        compact: true
        help: "Copy the subject and email"
        labelled: actions.labelled
        symbol: "doc.on.doc"
        text: "Copy email"

        onClicked: actions.note.copyEmail()
    }

    Theme.QuietButton {
        id: open

        compact: true
        help: "Opens a new draft in your mail app — nothing is sent until you send it"
        labelled: actions.labelled
        symbol: "arrow.up.forward.app"
        text: "Open in Mail"

        onClicked: actions.note.openInMail()
    }
}
