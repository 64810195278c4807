pragma ComponentBehavior
import QtQuick
import QtQuick.Layouts
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// What recording takes, and what of it is missing.
Sheet {
    id: sheet

    name: "Before your first call"
    width: 540

    contentItem: ColumnLayout {
        spacing: Theme.Space.l

        Text {
            Accessible.role: Accessible.Heading
            color: Theme.Palette.ink
            font: Theme.Typo.heading
            text: sheet.name
        }

        Text {
            Layout.fillWidth: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            text: setup.explanation
            wrapMode: Text.Wrap
        }

        Theme.Card {
            Layout.fillWidth: true

            contentItem: ColumnLayout {
                spacing: Theme.Space.m

                Repeater {
                    model: setup

                    SetupItem {
                        Layout.fillWidth: true

                        onSettingsWanted: pane => setup.openSettings(pane)
                    }
                }
            }
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: Theme.Space.s

            Theme.QuietButton {
                focus: true
                text: "Close"

                onClicked: Library.showSetup = false
            }

            Theme.QuietButton {
                text: "Record My Side Only"
                visible: setup.canRecordMySideOnly

                onClicked: setup.recordMySideOnly()
            }

            Theme.InkButton {
                enabled: setup.canRecord
                text: "Record Call"
                tint: Theme.Palette.buttonRecord

                onClicked: setup.record()
            }
        }

        RecordingSetup {
            id: setup
        }
    }

    onClosed: Library.showSetup = false
}
