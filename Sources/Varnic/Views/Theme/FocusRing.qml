import QtQuick
import Varnic.Theme as Theme

/// The ring around the control that the keyboard is on.
Rectangle {
    /// The corners of the control.
    property real corner: Theme.Radius.control

    anchors.fill: parent
    anchors.margins: -3
    border.color: Theme.Palette.you
    border.width: 2
    color: "transparent"
    objectName: "focusRing"
    radius: corner + 3
}
