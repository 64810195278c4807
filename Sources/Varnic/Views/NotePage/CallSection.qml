import QtQuick
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What a call has between its title and its notes.
Column {
    id: section

    required property NoteModel note
    required property CallPlayer player

    CallMeta {
        note: section.note
        player: section.player
        width: parent.width
    }

    Item {
        height: Theme.Space.m
        width: 1
    }

    SummaryStrip {
        note: section.note
        width: parent.width
    }

    Repeater {
        model: section.note.hasEmail ? 1 : 0

        Item {
            implicitHeight: card.implicitHeight + Theme.Space.xl

            EmailCard {
                id: card

                note: section.note
                width: parent.width
                y: Theme.Space.xl
            }
            width: section.width
        }
    }
}
