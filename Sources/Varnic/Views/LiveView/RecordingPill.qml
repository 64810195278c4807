import QtQuick
import Varnic.Ink
import Varnic.LiveView
import Varnic.Theme as Theme

/// A running recording in small: its ink, its length, and the way to stop it.
Item {
    id: pill

    /// What the button is for. The window around shows it, for a tip within would lie on the button.
    readonly property string help: "Stop recording and save"
    /// The pointer rests on the button.
    readonly property bool wantsHelp: stop.hovered && stop.enabled && !stop.isAnswered

    Accessible.name: "Varnic is recording"
    Accessible.role: Accessible.Grouping
    implicitHeight: 44
    implicitWidth: 300

    Rectangle {
        anchors.fill: parent
        anchors.margins: 2
        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.surface
        radius: height / 2
    }

    RecordingDot {
        id: dot

        anchors.verticalCenter: parent.verticalCenter
        size: 9
        x: 16
    }

    NibLine {
        id: line

        anchors.left: dot.right
        anchors.leftMargin: 10
        anchors.right: stamp.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        height: 26
        history: LiveCall.ink
        visible: !warning.visible
    }

    Text {
        id: warning

        Accessible.name: text
        Accessible.role: Accessible.AlertMessage
        anchors.left: line.left
        anchors.right: line.right
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.warn
        elide: Text.ElideRight
        font: Theme.Typo.caption
        maximumLineCount: 2
        objectName: "warning"
        text: LiveCall.warning
        visible: text !== ""
        wrapMode: Text.WordWrap
    }

    Theme.Label {
        id: stamp

        anchors.right: stop.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.ink
        font: Theme.Typo.timer
        text: LiveCall.stamp
    }

    Theme.PlainButton {
        id: stop

        Accessible.description: pill.help
        Accessible.name: "Stop recording"
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        corner: 12
        enabled: LiveCall.isRecording
        implicitHeight: 24
        implicitWidth: 24

        background: Rectangle {
            color: Theme.Palette.buttonRecord
            opacity: stop.enabled ? (stop.down ? 0.85 : 1) : 0.4
            radius: 12
        }
        contentItem: Item {
            Theme.Symbol {
                anchors.centerIn: parent
                color: "white"
                name: "stop.fill"
                size: 10
                weight: Font.Bold
            }
        }

        onClicked: LiveCall.stop()
    }
}
