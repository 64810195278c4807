import QtQuick
import QtQuick.Layouts
import Varnic.LiveView
import Varnic.Theme as Theme

/// What is being recorded, for how long, and what can be done about it; in rows where there is no room for one.
GridLayout {
    id: header

    readonly property real buttonsWidth: copy.implicitWidth + pause.implicitWidth + discard.implicitWidth + stop.implicitWidth + 3 * Theme.Space.m

    signal discardAsked

    columnSpacing: Theme.Space.m
    columns: width >= status.implicitWidth + buttonsWidth + Theme.Space.m ? 2 : 1
    rowSpacing: Theme.Space.s

    RowLayout {
        id: status

        Layout.fillWidth: true
        spacing: Theme.Space.m

        Rectangle {
            Accessible.name: LiveCall.stateName + ", " + LiveCall.stamp
            Accessible.role: Accessible.StaticText
            Layout.preferredHeight: state.implicitHeight + 10
            Layout.preferredWidth: state.implicitWidth + 20
            color: Qt.alpha(Theme.Palette.record, 0.08)
            radius: height / 2

            Row {
                id: state

                anchors.centerIn: parent
                spacing: 8

                RecordingDot {
                    Accessible.ignored: true
                    anchors.verticalCenter: parent.verticalCenter
                    size: 9
                }

                Text {
                    id: stateName

                    Accessible.ignored: true
                    color: Theme.Palette.record
                    font: Theme.Typo.uiStrong
                    text: LiveCall.stateName
                }

                Text {
                    Accessible.ignored: true
                    anchors.baseline: stateName.baseline
                    color: Theme.Palette.ink
                    font: Theme.Typo.timer
                    text: LiveCall.stamp
                }
            }
        }

        Theme.Label {
            Layout.fillWidth: true
            color: Theme.Palette.inkSoft
            elide: Text.ElideRight
            font: Theme.Typo.ui
            text: LiveCall.source
        }
    }

    Flow {
        Layout.fillWidth: header.columns === 1
        Layout.preferredWidth: header.buttonsWidth
        spacing: Theme.Space.m

        Theme.QuietButton {
            id: copy

            help: "Copy a short “I’m recording this call” message to paste into the chat"
            objectName: "copyHeadsUp"
            text: "Copy Heads-up"

            onClicked: LiveCall.copyHeadsUp()
        }

        Theme.QuietButton {
            id: pause

            enabled: LiveCall.isRecording
            help: LiveCall.isPaused ? "Go on recording" : "Record nothing for a while"
            objectName: "pause"
            text: LiveCall.isPaused ? "Resume" : "Pause"

            onClicked: {
                if (LiveCall.isPaused)
                    LiveCall.resume();
                else
                    LiveCall.pause();
            }
        }

        Theme.QuietButton {
            id: discard

            enabled: LiveCall.isRecording
            objectName: "discard"
            text: "Discard"

            onClicked: header.discardAsked()
        }

        Theme.InkButton {
            id: stop

            enabled: LiveCall.isRecording
            objectName: "stop"
            text: "Stop & Save"
            tint: Theme.Palette.buttonRecord

            onClicked: LiveCall.stop()

            Shortcut {
                enabled: LiveCall.isRecording
                sequence: "Ctrl+."

                onActivated: LiveCall.stop()
            }
        }
    }
}
