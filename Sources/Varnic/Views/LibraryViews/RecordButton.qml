import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// Starts a recording, and stops it.
Theme.PlainButton {
    id: button

    readonly property font digits: Theme.Typo.tabular(13, Font.DemiBold)

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

            Item {
                anchors.verticalCenter: parent.verticalCenter
                height: width
                width: 17

                Theme.Symbol {
                    anchors.centerIn: parent
                    color: "white"
                    name: RecordAction.isBusy ? "stop.fill" : "record.circle"
                    size: RecordAction.isBusy ? 10 : 13
                    weight: Font.DemiBold
                }
            }

            // As wide as the widest time, so that nothing moves while it grows.
            Text {
                anchors.verticalCenter: parent.verticalCenter
                color: "white"
                font: button.digits
                text: RecordAction.isBusy ? RecordAction.stopText : idle.text
                width: Math.ceil(RecordAction.isBusy ? hour.advanceWidth : idle.advanceWidth)
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
        id: hour

        font: button.digits
        text: "Stop · 0:00:00"
    }
}
