import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// Whether and by whom an AI summarises calls.
SettingsPage {
    FormSection {
        detail: "AI summaries are optional and off unless you turn them on."
        title: "Summaries"

        FormRow {
            SymbolLine {
                symbol: "lock.fill"
                text: SummarySettings.ownSummaries
                width: parent.width
            }
        }

        FormRow {
            name: SettingsWindow.AI

            Theme.PaperSwitch {
                isOn: SummarySettings.isEnabled
                text: "Also offer AI summaries with my own API key"
                width: parent.width

                onChosen: isOn => SummarySettings.isEnabled = isOn
            }
        }
    }

    FormSection {
        detail: SummarySettings.keyPromise
        title: "Provider"
        visible: SummarySettings.isEnabled

        ControlRow {
            name: SettingsWindow.Provider
            text: "Provider"

            Theme.PaperPicker {
                choices: SummarySettings.providers
                name: "Provider"
                selected: SummarySettings.provider
                width: 300

                onChosen: index => SummarySettings.provider = index
            }
        }

        ControlRow {
            text: "Model"
            visible: !SummarySettings.hasServer

            Theme.PaperPicker {
                choices: SummarySettings.models
                details: SummarySettings.modelNotes
                name: "Model"
                prompt: SummarySettings.otherModel
                selected: SummarySettings.model
                width: 300

                onChosen: index => SummarySettings.model = index
            }
        }

        ServerRows {
            visible: SummarySettings.hasServer
            width: parent.width
        }

        KeyRow {
            visible: SummarySettings.needsKey || SummarySettings.hasServer && ServerCheck.wantsKey
        }
    }

    FormSection {
        detail: SummarySettings.asksEachTime ? "Only when you summarise a call with AI — never in the background." : ""
        visible: SummarySettings.isEnabled

        FormRow {
            Theme.PaperSwitch {
                detail: "Off: every new call is summarised by AI automatically"
                isOn: SummarySettings.asksEachTime
                text: "Only when I press “Summarise” on a call"
                width: parent.width

                onChosen: isOn => SummarySettings.asksEachTime = isOn
            }
        }

        FormRow {
            SymbolLine {
                symbol: SummarySettings.staysHere ? "desktopcomputer" : "arrow.up.forward.app"
                text: SummarySettings.disclosure
                width: parent.width
            }
        }
    }
}
