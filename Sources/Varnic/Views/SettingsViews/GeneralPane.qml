import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// The user, how a recording is started, and the reminder to tell people.
SettingsPage {
    Component.onCompleted: GeneralSettings.look()

    FormSection {
        detail: "Varnic works without, but for what is said here."
        title: "Missing on this computer"
        visible: GeneralSettings.missing.length > 0

        Repeater {
            model: GeneralSettings.missing

            FormRow {
                id: part

                required property string modelData

                SymbolLine {
                    symbol: "exclamationmark.triangle"
                    symbolColor: Theme.Palette.warn
                    text: part.modelData
                    width: parent.width
                }
            }
        }
    }

    FormSection {
        detail: "Shown on your side of transcripts and at the end of follow-up emails."
        title: "You"

        ControlRow {
            text: "Your name"

            Theme.PaperTextField {
                Accessible.name: "Your name"
                placeholderText: "Used to sign follow-up emails"
                text: GeneralSettings.yourName
                width: 280

                onTextEdited: GeneralSettings.yourName = text
            }
        }
    }

    FormSection {
        detail: "Press the shortcut anywhere to start or stop. The tray icon turns red while recording, always."
        title: "Starting a recording"

        FormRow {
            Theme.PaperSwitch {
                isOn: HotkeySettings.isEnabled
                text: "“Record call” shortcut"
                width: parent.width

                onChosen: isOn => HotkeySettings.isEnabled = isOn
            }
        }

        HotkeyRow {
        }

        FormRow {
            Theme.PaperSwitch {
                detail: GeneralSettings.pillNote
                isOn: GeneralSettings.showPill
                text: "Show a floating recording pill"
                width: parent.width

                onChosen: isOn => GeneralSettings.showPill = isOn
            }
        }

        FormRow {
            Theme.PaperSwitch {
                detail: GeneralSettings.loginProblem
                isOn: GeneralSettings.startsAtLogin
                text: "Start in the background when I log in"
                width: parent.width

                onChosen: isOn => GeneralSettings.startsAtLogin = isOn
            }
        }
    }

    FormSection {
        detail: "Recording laws vary. Varnic reminds you to tell people, and offers a message to paste into the call’s chat."
        title: "Consent"

        FormRow {
            Theme.PaperSwitch {
                isOn: ConsentReminder.remindsEveryTime
                text: "Remind me before every recording"
                width: parent.width

                onChosen: isOn => ConsentReminder.remindsEveryTime = isOn
            }
        }

        ControlRow {
            text: "Heads-up message"

            Theme.PaperPicker {
                choices: ConsentReminder.tones
                name: "Heads-up message"
                selected: ConsentReminder.tone

                onChosen: index => ConsentReminder.tone = index
            }
        }

        FormRow {
            hasLine: false

            Rectangle {
                color: Theme.Palette.wash
                height: message.implicitHeight + 16
                radius: Theme.Radius.control
                width: parent.width

                Text {
                    id: message

                    Accessible.name: text
                    Accessible.role: Accessible.StaticText
                    color: Theme.Palette.inkSoft
                    font: Theme.Typo.caption
                    text: ConsentReminder.message
                    textFormat: Text.PlainText
                    width: parent.width - 16
                    wrapMode: Text.Wrap
                    x: 8
                    y: 8
                }
            }
        }

        FormRow {
            Theme.QuietButton {
                enabled: GeneralSettings.isReminderSeen
                text: "Show the Consent Reminder Again Next Time"

                onClicked: GeneralSettings.showReminderAgain()
            }
        }
    }
}
