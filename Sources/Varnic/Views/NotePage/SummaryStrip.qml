import QtQuick
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// How far the call is transcribed, what went wrong with it, or who summarises it.
Column {
    id: strip

    required property NoteModel note

    bottomPadding: model.stage !== "" || model.problem !== "" || model.languageNote !== "" || model.showsAI ? Theme.Space.m : 0
    spacing: 8

    SummaryModel {
        id: model

        note: strip.note
    }

    Row {
        Accessible.name: model.stage
        Accessible.role: Accessible.StaticText
        spacing: Theme.Space.s
        visible: model.stage !== ""

        Theme.Spinner {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            size: 14
        }

        Text {
            Accessible.ignored: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            text: model.stage
        }
    }

    Row {
        spacing: Theme.Space.s
        visible: model.problem !== ""
        width: parent.width

        Theme.Symbol {
            id: warning

            color: Theme.Palette.warn
            name: "exclamationmark.triangle"
            size: 14
            y: 2
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.AlertMessage
            color: Theme.Palette.ink
            font: Theme.Typo.ui
            lineHeight: 1.25
            text: model.problem
            textFormat: Text.PlainText
            width: parent.width - warning.width - parent.spacing
            wrapMode: Text.Wrap
        }
    }

    Flow {
        spacing: Theme.Space.s
        visible: model.problem !== "" && (model.needsSettings || strip.note.canTranscribe)
        width: parent.width

        Theme.QuietButton {
            objectName: "openSettings"
            text: "Open Settings"
            visible: model.needsSettings

            onClicked: model.openSettings()
        }

        Theme.QuietButton {
            text: "Transcribe Again"
            visible: strip.note.canTranscribe

            onClicked: strip.note.retranscribe()
        }
    }

    Theme.Label {
        color: Theme.Palette.inkSoft
        font: Theme.Typo.caption
        objectName: "languageNote"
        text: model.languageNote
        textFormat: Text.PlainText
        visible: text !== ""
        width: parent.width
        wrapMode: Text.Wrap
    }

    Repeater {
        model: model.showsAI ? 1 : 0

        AIControls {
            summary: model
            width: strip.width
        }
    }
}
