import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// What can be done with the follow-up email; with symbols alone where there is little room.
Row {
    id: actions

    required property bool labelled
    required property NoteModel note

    spacing: Theme.Space.s

    Theme.QuietButton {
        Accessible.name: "Copy email"
        compact: true
        help: "Copy the subject and email"
        symbol: "doc.on.doc"
        text: actions.labelled ? "Copy email" : ""

        onClicked: actions.note.copyEmail()
    }

    Theme.QuietButton {
        Accessible.name: "Open in Mail"
        compact: true
        help: "Opens a new draft in your mail app — nothing is sent until you send it"
        symbol: "arrow.up.forward.app"
        text: actions.labelled ? "Open in Mail" : ""

        onClicked: actions.note.openInMail()
    }
}
