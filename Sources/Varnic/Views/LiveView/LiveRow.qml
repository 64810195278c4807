import QtQuick
import Varnic.LiveView
import Varnic.Theme as Theme

/// The row of a list that stands for the running recording.
Item {
    Accessible.name: "Recording now, " + LiveCall.stamp
    Accessible.role: Accessible.StaticText
    implicitHeight: Math.max(title.implicitHeight, stamp.implicitHeight)
    implicitWidth: dot.width + title.implicitWidth + stamp.implicitWidth + 2 * Theme.Space.s

    RecordingDot {
        id: dot

        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        size: 9
    }

    Text {
        id: title

        Accessible.ignored: true
        anchors.left: dot.right
        anchors.leftMargin: Theme.Space.s
        anchors.right: stamp.left
        anchors.rightMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.ink
        elide: Text.ElideRight
        font: Theme.Typo.rowTitle
        text: "Recording now"
    }

    Text {
        id: stamp

        Accessible.ignored: true
        anchors.baseline: title.baseline
        anchors.right: parent.right
        color: Theme.Palette.inkSoft
        font: Theme.Typo.stamp
        text: LiveCall.stamp
    }
}
