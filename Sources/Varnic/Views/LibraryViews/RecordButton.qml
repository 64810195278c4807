import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// Starts a recording, and stops it.
Theme.PlainButton {
    id: button

    readonly property font digits: Theme.Typo.uiStrong
    /// As wide as the widest text, so that nothing moves when a recording starts or its time grows.
    readonly property real textWidth: Math.ceil(Math.max(idle.width, busy.width))

    Accessible.name: RecordAction.accessibleName
    enabled: RecordAction.isEnabled
    help: RecordAction.help
    implicitHeight: 32
    opacity: enabled ? (down ? 0.85 : 1) : 0.6

    background: Rectangle {
        color: RecordAction.isBusy ? Theme.Palette.buttonRecord : Theme.Palette.buttonInk
        radius: Theme.Radius.control
    }
    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: 8

            Theme.Symbol {
                anchors.verticalCenter: parent.verticalCenter
                color: "white"
                name: RecordAction.isBusy ? "stop.fill" : "record.circle"
                size: RecordAction.isBusy ? 10 : 13
                weight: Font.DemiBold
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                color: "white"
                font: button.digits
                text: RecordAction.isBusy ? RecordAction.stopText : "Record Call"
                width: button.textWidth
            }
        }
    }

    onClicked: RecordAction.toggle()

    TextMetrics {
        id: idle

        font: button.digits
        text: "Record Call"
    }

    TextMetrics {
        id: busy

        font: button.digits
        text: "Stop · 00:00"
    }
}
