import QtQuick
import QtQuick.Layouts
import Varnic.SettingsViews
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What recording takes, and what of it is missing.
Theme.Sheet {
    id: sheet

    name: "Before your first call"
    readonly property PermissionRows permissions: PermissionRows {
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
            text: sheet.permissions.explanation
            wrapMode: Text.Wrap
        }

        Theme.Card {
            Layout.fillWidth: true

            contentItem: ColumnLayout {
                spacing: Theme.Space.m

                Repeater {
                    model: sheet.permissions

                    SetupItem {
                        Layout.fillWidth: true

                        onAllowed: sheet.permissions.allow()
                        onOpened: sheet.permissions.open(index)
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

                onClicked: sheet.permissions.close()
            }

            Theme.QuietButton {
                text: "Record My Side Only"
                visible: sheet.permissions.canRecordMySideOnly

                onClicked: sheet.permissions.recordMySideOnly()
            }

            Theme.InkButton {
                enabled: sheet.permissions.canRecord
                text: "Record Call"
                tint: Theme.Palette.buttonRecord

                onClicked: sheet.permissions.record()
            }
        }
    }

    onClosed: permissions.close()
}
