import QtQuick
import Varnic.Theme as Theme

/// The button for what matters most: white on ink.
PlainButton {
    id: button

    property color tint: Theme.Palette.buttonInk

    bottomPadding: 6
    leftPadding: 14
    opacity: down ? 0.85 : 1
    rightPadding: 14
    scale: down ? 0.97 : 1
    topPadding: 6

    background: Rectangle {
        color: button.tint
        opacity: button.enabled ? 1 : 0.4
        radius: Theme.Radius.control
    }
    contentItem: Text {
        color: "white"
        elide: Text.ElideRight
        font: Theme.Typo.uiStrong
        horizontalAlignment: Text.AlignHCenter
        text: button.text
        verticalAlignment: Text.AlignVCenter
    }
    Behavior on opacity  {
        NumberAnimation {
            duration: Theme.Motion.press
            easing.type: Easing.OutQuad
        }
    }
    Behavior on scale  {
        NumberAnimation {
            duration: Theme.Motion.press
            easing.type: Easing.OutQuad
        }
    }
}
