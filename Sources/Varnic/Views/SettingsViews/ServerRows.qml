import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// The address of a server, whether it answers, and its model.
Column {
    id: rows

    ControlRow {
        detail: ServerCheck.addressProblem
        // The line above it is that of the first row.
        hasLine: true
        text: "Server"

        Theme.PaperTextField {
            Accessible.name: "Server"
            inputMethodHints: Qt.ImhUrlCharactersOnly
            placeholderText: SummarySettings.defaultServer
            text: SummarySettings.server
            width: 230

            onTextEdited: SummarySettings.server = text
        }

        Theme.QuietButton {
            enabled: !ServerCheck.isAsking
            height: 30
            help: "See whether the server answers, and list its models"
            text: "Test"

            onClicked: ServerCheck.ask()
        }
    }

    FormRow {
        hasLine: false

        Flow {
            spacing: Theme.Space.s
            width: parent.width

            Repeater {
                model: SummarySettings.presets

                Theme.QuietButton {
                    required property int index
                    required property string modelData

                    compact: true
                    text: modelData

                    onClicked: SummarySettings.usePreset(index)
                }
            }
        }

        Row {
            spacing: Theme.Space.s
            visible: ServerCheck.isAsking

            Theme.Spinner {
                size: 12
            }

            Text {
                Accessible.name: text
                Accessible.role: Accessible.StaticText
                color: Theme.Palette.inkSoft
                font: Theme.Typo.caption
                text: "Asking the server…"
            }
        }

        SymbolLine {
            symbol: ServerCheck.works ? "checkmark.circle" : "exclamationmark.triangle"
            symbolColor: ServerCheck.works ? Theme.Palette.ok : Theme.Palette.warn
            text: ServerCheck.sentence
            visible: text !== ""
            width: parent.width
        }
    }

    ControlRow {
        text: "Model"

        Theme.PaperTextField {
            Accessible.name: "Model"
            placeholderText: "e.g. llama3.2"
            text: SummarySettings.serverModel
            width: 300

            onTextEdited: SummarySettings.serverModel = text
        }
    }

    ControlRow {
        hasLine: false
        text: ""
        visible: ServerCheck.models.length > 0

        Theme.PaperPicker {
            choices: ServerCheck.models
            name: "Models of the server"
            prompt: "Choose one of the server’s models"
            selected: ServerCheck.model
            width: 300

            onChosen: index => ServerCheck.model = index
        }
    }
}
