import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What recording takes, the transcript, and where calls are kept.
SettingsPage {
    id: page

    readonly property PermissionRows permissions: PermissionRows {
        inSettings: true
    }

    readonly property SoundSettings sound: SoundSettings {
        listens: page.permissions.isAllowed
    }

    Component.onCompleted: RecordingSettings.look()

    FormSection {
        detail: "Asked for only when you press a button here or start your first recording."
        title: "Permissions"

        Repeater {
            model: page.permissions

            FormRow {
                id: row

                required property string detail
                required property int index
                required property bool isDenied
                required property bool isGranted
                required property string remedy
                required property string title

                name: SettingsWindow.Microphone + index

                PermissionRow {
                    detail: row.detail
                    isDenied: row.isDenied
                    isGranted: row.isGranted
                    remedy: row.remedy
                    title: row.title
                    width: parent.width

                    onAllowed: page.permissions.allow()
                    onOpened: page.permissions.open(row.index)
                }
            }
        }
    }

    FormSection {
        detail: "What a call is recorded from. A device that isn’t there is replaced by the system’s until it comes back."
        title: "Sound"

        SoundSideRow {
            prompt: "Your microphone"
            side: page.sound.you
        }

        SoundSideRow {
            prompt: "Their side"
            side: page.sound.them
        }
    }

    FormSection {
        detail: RecordingSettings.languageNote
        title: "Transcript"

        ControlRow {
            detail: RecordingSettings.languageDetail
            name: SettingsWindow.Language
            text: "Language"

            Theme.PaperPicker {
                choices: RecordingSettings.languages
                name: "Language"
                prompt: RecordingSettings.otherLanguage
                selected: RecordingSettings.language

                onChosen: index => RecordingSettings.language = index
            }
        }

        ControlRow {
            detail: "The transcript of a finished call. Live lines come from the fastest model."
            text: "Speech model"
            visible: RecordingSettings.hasSeveralModels

            Theme.PaperPicker {
                choices: ["Best words", "Fastest"]
                name: "Speech model"
                selected: RecordingSettings.model

                onChosen: index => RecordingSettings.model = index
            }
        }

        FormRow {
            Theme.PaperSwitch {
                isOn: RecordingSettings.liveTranscript
                text: "Show the transcript live while recording"
                width: parent.width

                onChosen: isOn => RecordingSettings.liveTranscript = isOn
            }
        }
    }

    FormSection {
        detail: "Each call keeps two small audio tracks (about 1 MB a minute) so you can replay it. Turn this off to keep only the transcript."
        title: "Storage"

        FormRow {
            Theme.PaperSwitch {
                isOn: RecordingSettings.keepAudio
                text: "Keep call audio after transcribing"
                width: parent.width

                onChosen: isOn => RecordingSettings.keepAudio = isOn
            }
        }

        LibraryRow {
            id: library
        }

        // What comes of a change stands below the buttons.
        Connections {
            function onChanged() {
                if (LibraryPlace.sentence !== "")
                    Qt.callLater(page.reveal, library); // qmllint disable type
            }

            target: LibraryPlace
        }
    }
}
