import QtQuick
import Varnic.Theme as Theme

/// A short notice, with a button to undo what it reports, where that is possible. Whoever shows it makes a new
/// one for each message and removes it in time.
Rectangle {
    id: toast

    required property string symbol
    required property string text
    /// Whether the message can be taken back.
    property bool undoable

    signal dismissed
    signal undone

    Accessible.name: text
    Accessible.role: Accessible.AlertMessage
    border.color: Theme.Palette.rule
    border.pixelAligned: false
    border.width: 1 / Screen.devicePixelRatio
    color: Theme.Palette.surface
    implicitHeight: row.implicitHeight + 16
    implicitWidth: row.implicitWidth + 28
    radius: height / 2

    Theme.Shadow {
        height: toast.height + 2 * blur
        radius: toast.radius
        width: toast.width + 2 * blur
        x: -blur
        y: 3 - blur
        z: -1
    }

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 8

        SymbolLabel {
            anchors.verticalCenter: parent.verticalCenter
            font: Theme.Typo.system(12.5, Font.Medium)
            spacing: 8
            symbol: toast.symbol
            symbolSize: 11
            symbolWeight: Font.Bold
            text: toast.text
        }

        PlainButton {
            id: undo

            anchors.verticalCenter: parent.verticalCenter
            text: "Undo"
            visible: toast.undoable

            contentItem: Text {
                color: Theme.Palette.you
                font: Theme.Typo.system(12.5, Font.DemiBold)
                text: undo.text
            }

            onClicked: {
                toast.undone();
                toast.dismissed();
            }

            Shortcut {
                enabled: toast.undoable
                sequence: "Ctrl+Z"

                onActivated: undo.clicked()
            }
        }
    }
}
