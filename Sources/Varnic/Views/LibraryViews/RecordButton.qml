import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// Starts a recording, and stops it.
Theme.PlainButton {
    id: button

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

            // As wide as the widest text, so that nothing moves when a recording starts or its time grows.
            Item {
                anchors.verticalCenter: parent.verticalCenter
                implicitHeight: idle.implicitHeight
                implicitWidth: Math.max(idle.implicitWidth, widest.width)

                Text {
                    id: idle

                    color: "white"
                    font: Theme.Typo.uiStrong
                    text: "Record Call"
                    visible: !RecordAction.isBusy
                }

                Text {
                    color: "white"
                    font: Theme.Typo.uiStrong
                    text: RecordAction.stopText
                    visible: RecordAction.isBusy
                }

                TextMetrics {
                    id: widest

                    font: Theme.Typo.uiStrong
                    text: "Stop · 00:00:00"
                }
            }
        }
    }

    onClicked: RecordAction.toggle()
}
