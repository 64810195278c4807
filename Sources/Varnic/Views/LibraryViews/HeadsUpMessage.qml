import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The message for the call's chat, in the tone that is chosen.
ColumnLayout {
    spacing: Theme.Space.s

    RowLayout {
        Theme.Eyebrow {
            Layout.fillWidth: true
            text: "Paste into the chat"
        }

        Row {
            Accessible.name: "Heads-up message"
            Accessible.role: Accessible.Grouping
            spacing: 2

            Repeater {
                model: ConsentReminder.tones

                T.RadioButton {
                    id: tone

                    required property int index
                    required property string modelData

                    Accessible.name: text
                    checked: ConsentReminder.tone === index
                    implicitHeight: 24
                    implicitWidth: 70
                    text: modelData

                    background: Rectangle {
                        border.color: Theme.Palette.you
                        border.width: tone.visualFocus ? 2 : 0
                        color: tone.checked ? Theme.Palette.washHover : tone.hovered ? Theme.Palette.wash : "transparent"
                        radius: 6
                    }
                    contentItem: Text {
                        color: tone.checked ? Theme.Palette.ink : Theme.Palette.inkSoft
                        font: Theme.Typo.captionStrong
                        horizontalAlignment: Text.AlignHCenter
                        text: tone.text
                        verticalAlignment: Text.AlignVCenter
                    }

                    onCheckedChanged: {
                        if (checked) {
                            ConsentReminder.tone = index;
                        }
                    }
                }
            }
        }
    }

    Rectangle {
        Layout.fillWidth: true
        color: Theme.Palette.wash
        implicitHeight: message.implicitHeight + 2 * Theme.Space.m
        radius: Theme.Radius.control

        Text {
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
