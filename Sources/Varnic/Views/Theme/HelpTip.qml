import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// What a control is for, shown when the pointer rests on it.
T.ToolTip {
    id: tip

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent
    delay: 700
    horizontalPadding: 8
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: Math.min(320, implicitContentWidth + leftPadding + rightPadding)
    margins: 6
    verticalPadding: 4
    x: parent ? (parent.width - width) / 2 : 0
    y: parent ? parent.height + 6 : 0

    background: Rectangle {
        border.color: Theme.Palette.rule
        border.pixelAligned: false
        border.width: 1 / Screen.devicePixelRatio
        color: Theme.Palette.surface
        radius: 6

        Theme.Shadow {
            height: parent.height + 2 * blur
            radius: 6
            width: parent.width + 2 * blur
            x: -blur
            y: 3 - blur
            z: -1
        }
    }
    contentItem: Text {
        color: Theme.Palette.ink
        font: Theme.Typo.caption
        text: tip.text
        wrapMode: Text.Wrap
    }
}
