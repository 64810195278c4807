import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A question above the window, which waits for it.
T.Dialog {
    id: sheet

    /// For assistive programs.
    required property string name

    anchors.centerIn: T.Overlay.overlay
    closePolicy: T.Popup.CloseOnEscape
    focus: true
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    modal: true
    padding: Theme.Space.xl
    parent: T.Overlay.overlay
    title: name
    visible: true

    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.28)
    }
    background: Rectangle {
        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.paper
        radius: Theme.Radius.card
    }
    enter: Transition {
        NumberAnimation {
            duration: Theme.Motion.snappy
            from: 0
            property: "opacity"
            to: 1
        }
    }
}
