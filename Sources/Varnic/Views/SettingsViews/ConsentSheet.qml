import QtQuick
import QtQuick.Layouts
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// Reminds the user to tell the others, before a recording.
Theme.Sheet {
    id: sheet

    name: ConsentReminder.title
    width: 500

    ColumnLayout {
        spacing: Theme.Space.l
        width: parent.width

        Keys.onEnterPressed: ConsentReminder.accept()
        Keys.onReturnPressed: ConsentReminder.accept()

        RowLayout {
            spacing: Theme.Space.m

            Theme.Symbol {
                color: Theme.Palette.you
                name: "person.2.wave.2"
                size: 26
            }

            Theme.Heading {
                Layout.fillWidth: true
                color: Theme.Palette.ink
                font: Theme.Typo.heading
                level: 1
                text: ConsentReminder.title
                wrapMode: Text.Wrap
            }
        }

        Theme.Label {
            Layout.fillWidth: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            text: ConsentReminder.body
            wrapMode: Text.Wrap
        }

        HeadsUpMessage {
            Layout.fillWidth: true
        }

        RowLayout {
            spacing: Theme.Space.s

            Theme.Symbol {
                Layout.alignment: Qt.AlignTop
                color: Theme.Palette.record
                name: "record.circle"
                size: 12
            }

            Theme.Label {
                Layout.fillWidth: true
                color: Theme.Palette.inkSoft
                font: Theme.Typo.caption
                text: ConsentReminder.promise
                wrapMode: Text.Wrap
            }
        }

        Theme.PaperCheckBox {
            checked: ConsentReminder.remindsEveryTime
            text: "Remind me before every recording"

            onCheckedChanged: ConsentReminder.remindsEveryTime = checked
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: Theme.Space.s

            Theme.QuietButton {
                text: "Cancel"

                onClicked: ConsentReminder.cancel()
            }

            Theme.InkButton {
                focus: true
                text: "Start Recording"
                tint: Theme.Palette.buttonRecord

                onClicked: ConsentReminder.accept()
            }
        }
    }

    onClosed: ConsentReminder.cancel()
}
