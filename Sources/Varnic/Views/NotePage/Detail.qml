import QtQuick
import Varnic.LiveView
import Varnic.NotePage
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// The detail column: the running recording, the open note, or a hint at what can be done.
FocusScope {
    id: detail

    DetailModel {
        id: shown
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.Palette.paper
    }

    Loader {
        active: shown.live
        anchors.fill: parent

        sourceComponent: LiveRecordingView {
        }
    }

    /// A page of its own for each note, so that nothing of one is left on the next. What is typed while an import or the
    /// end of a recording opens its note does not go on in that note's title: the keyboard goes back to where it was before.
    Repeater {
        model: shown.notes

        NotePage {
            required property string modelData

            height: detail.height
            noteId: modelData
            width: detail.width

            Component.onCompleted: {
                if (detail.activeFocus) {
                    detail.focus = false;
                }
                focus = true;
            }
        }
    }

    Column {
        anchors.centerIn: parent
        spacing: Theme.Space.m
        visible: shown.empty

        Theme.NibMark {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.Palette.inkFaint
            opacity: 0.7
            size: 44
        }

        Theme.Label {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.Palette.inkSoft
            font: Theme.Typo.subheading
            text: "Pick a note, or record a call"
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.Space.s

            Theme.QuietButton {
                anchors.verticalCenter: parent.verticalCenter
                text: "New Note"

                onClicked: shown.newNote()
            }

            Theme.InkButton {
                anchors.verticalCenter: parent.verticalCenter
                text: "Record Call"
                tint: Theme.Palette.buttonInk

                onClicked: shown.record()
            }
        }
    }
}
