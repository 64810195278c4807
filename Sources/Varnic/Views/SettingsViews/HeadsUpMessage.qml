import QtQuick
import QtQuick.Layouts
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// The message for the call's chat, in the tone that is chosen.
ColumnLayout {
    spacing: Theme.Space.s

    RowLayout {
        Theme.Eyebrow {
            Layout.fillWidth: true
            text: "Paste into the chat"
        }

        Theme.SegmentedControl {
            choices: ConsentReminder.tones
            currentIndex: ConsentReminder.tone
            name: "Heads-up message"

            onChosen: index => ConsentReminder.tone = index
        }
    }

    Rectangle {
        Layout.fillWidth: true
        color: Theme.Palette.wash
        implicitHeight: message.implicitHeight + 2 * Theme.Space.m
        radius: Theme.Radius.control

        Theme.Label {
            id: message

            anchors.fill: parent
            anchors.margins: Theme.Space.m
            color: Theme.Palette.ink
            font: Theme.Typo.ui
            text: ConsentReminder.message
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
    }

    Theme.QuietButton {
        symbol: "doc.on.doc"
        text: "Copy Message"

        onClicked: ConsentReminder.copy()
    }
}
