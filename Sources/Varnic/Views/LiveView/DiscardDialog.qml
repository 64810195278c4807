import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnic.LiveView
import Varnic.Theme as Theme

/// Asks before a recording is thrown away. It goes away by itself when the recording ends otherwise.
T.Dialog {
    id: dialog

    anchors.centerIn: T.Overlay.overlay
    closePolicy: T.Popup.CloseOnEscape
    focus: true
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: 380
    modal: true
    padding: Theme.Space.xl
    title: "Throw this recording away?"

    T.Overlay.modal: Rectangle {
        color: Qt.alpha("black", 0.25)
    }
    background: Rectangle {
        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.surface
        radius: Theme.Radius.card
    }
    contentItem: ColumnLayout {
        spacing: Theme.Space.m

        Theme.Heading {
            Layout.fillWidth: true
            color: Theme.Palette.ink
            font: Theme.Typo.subheading
            level: 1
            text: dialog.title
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
