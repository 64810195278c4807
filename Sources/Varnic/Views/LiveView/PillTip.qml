import QtQuick
import Varnic.LiveView
import Varnic.Theme as Theme

/// What the pill's button is for, in a window of its own: within the pill's there is no room beside the button.
Window {
    id: tip

    required property PillWindow owner
    required property string text
    property bool wanted

    /// Below the pill, or above it at the bottom of the screen.
    readonly property bool isAbove: owner.y + owner.height + height + 6 > Screen.virtualY + Screen.height

    color: Theme.Palette.surface
    flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowDoesNotAcceptFocus | Qt.WindowTransparentForInput
    height: label.implicitHeight + 8
    visible: false
    width: label.implicitWidth + 16
    x: owner.x + owner.width - width
    y: isAbove ? owner.y - height - 4 : owner.y + owner.height + 4

    onWantedChanged: {
        visible = false;
        delay.running = wanted;
    }

    Timer {
        id: delay

        interval: 700

        onTriggered: tip.visible = true
    }

    Rectangle {
        Accessible.name: tip.text
        Accessible.role: Accessible.ToolTip
        anchors.fill: parent
        border.color: Theme.Palette.rule
        border.width: 1
        color: "transparent"
    }

    Text {
        id: label

        Accessible.ignored: true
        anchors.centerIn: parent
        color: Theme.Palette.ink
        font: Theme.Typo.caption
        text: tip.text
    }
}
