import QtQuick
import QtQuick.Layouts
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// What recording takes, and what of it is missing.
Theme.Sheet {
    id: sheet

    name: "Before your first call"
    readonly property RecordingSetup setup: RecordingSetup {
    }

    width: 540

    ColumnLayout {
        spacing: Theme.Space.l
        width: parent.width

        Theme.Heading {
            color: Theme.Palette.ink
            font: Theme.Typo.heading
            level: 1
            text: sheet.name
        }

        Theme.Label {
            Layout.fillWidth: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            text: sheet.setup.explanation
            wrapMode: Text.Wrap
        }

        Theme.Card {
            Layout.fillWidth: true

            contentItem: ColumnLayout {
                spacing: Theme.Space.m

                Repeater {
                    model: sheet.setup

                    SetupItem {
                        Layout.fillWidth: true
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
                visible: sheet.setup.canRecordMySideOnly

                onClicked: sheet.setup.recordMySideOnly()
            }

            Theme.InkButton {
                enabled: sheet.setup.canRecord
                text: "Record Call"
                tint: Theme.Palette.buttonRecord

                onClicked: sheet.setup.record()
            }
        }
    }

    onClosed: Library.showSetup = false
}
