import QtQuick
import Varnic.Theme as Theme

/// A short notice, with a button to undo what it reports, where that is possible. Whoever shows it makes a new
/// one for each message and removes it in time.
Rectangle {
    id: toast

    /// How wide it may become before its text wraps, in points.
    property real maximumWidth: Infinity
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
    radius: Math.min(height / 2, 18)

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

        Symbol {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.ink
            name: toast.symbol
            size: 11
            visible: toast.symbol !== ""
            weight: Font.Bold
        }

        Text {
            readonly property real room: toast.maximumWidth - 28 - (toast.symbol !== "" ? mark.width + row.spacing : 0) - (toast.undoable ? undo.width + row.spacing : 0)

            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.ink
            font: Theme.Typo.system(12.5, Font.Medium)
            text: toast.text
            textFormat: Text.PlainText
            width: Math.min(implicitWidth, room)
            wrapMode: Text.Wrap
        }

        PlainButton {
            id: undo

            anchors.verticalCenter: parent.verticalCenter
            objectName: "undo"
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
                enabled: toast.undoable && toast.enabled
                sequence: "Ctrl+Z"

                onActivated: undo.clicked()
            }
        }
    }
}
