import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A sheet on the page, with what stands in it.
T.Pane {
    Accessible.ignored: true
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    padding: Theme.Space.l

    background: Rectangle {
        border.color: Theme.Palette.rule
        border.pixelAligned: false
        border.width: 1 / Screen.devicePixelRatio
        color: Theme.Palette.surface
        radius: Theme.Radius.card
    }
}
