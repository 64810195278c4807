import QtQuick
import Varnic.Theme as Theme

/// How well a card was known, and the digit that says so too.
Theme.PlainButton {
    id: button

    required property string digit

    Accessible.description: digit
    bottomPadding: 6
    leftPadding: Theme.Space.l
    rightPadding: Theme.Space.m
    topPadding: 6

    background: Rectangle {
        color: button.down || button.hovered ? Theme.Palette.washHover : Theme.Palette.wash
        radius: Theme.Radius.control
    }
    contentItem: Row {
        spacing: Theme.Space.s

        Text {
            Accessible.ignored: true
            color: Theme.Palette.ink
            font: Theme.Typo.uiStrong
            text: button.text
        }

        Text {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.inkSoft
            font: Theme.Typo.stamp
            text: button.digit
        }
    }
}
