import QtQuick
import QtQuick.Layouts
import Varnic.LiveView
import Varnic.Theme as Theme

/// Asks before a recording is thrown away. It goes away by itself when the recording ends otherwise.
Theme.Sheet {
    id: dialog

    name: "Throw this recording away?"
    visible: false
    width: 380

    ColumnLayout {
        spacing: Theme.Space.m
        width: parent.width

        Theme.Heading {
            Layout.fillWidth: true
            color: Theme.Palette.ink
            font: Theme.Typo.subheading
            level: 1
            text: dialog.name
            wrapMode: Text.Wrap
        }

        Theme.Label {
            Layout.fillWidth: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            text: "The audio and transcript so far won’t be saved."
            wrapMode: Text.Wrap
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: Theme.Space.s
            spacing: Theme.Space.s

            Theme.InkButton {
                objectName: "confirmDiscard"
                text: "Discard Recording"
                tint: Theme.Palette.buttonRecord

                onClicked: {
                    dialog.close();
                    LiveCall.discard();
                }
            }

            Theme.QuietButton {
                focus: true
                objectName: "keep"
                text: "Keep Recording"

                onClicked: dialog.close()
            }
        }
    }

    Connections {
        function onStateChanged() {
            if (!LiveCall.isRecording)
                dialog.close();
        }

        target: LiveCall
    }
}
