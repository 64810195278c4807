import QtQuick
import Varnic.Ink
import Varnic.Theme as Theme

/// How a call stands: what is being done to it, or who spoke when.
Item {
    id: line

    required property bool hasTranscript
    required property callInk ink
    required property string stage

    implicitHeight: Math.max(14, words.visible ? words.implicitHeight : 0)

    Loader {
        id: spinner

        active: line.stage !== ""
        anchors.verticalCenter: parent.verticalCenter

        sourceComponent: Theme.Spinner {
            size: 12
        }
    }

    Text {
        id: words

        Accessible.ignored: true
        anchors.left: parent.left
        anchors.leftMargin: spinner.active ? 18 : 0
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkSoft
        elide: Text.ElideRight
        font: Theme.Typo.caption
        text: line.stage !== "" ? line.stage : "No transcript"
        visible: line.stage !== "" || !line.hasTranscript
    }

    InkSignature {
        anchors.fill: parent
        call: line.ink
        quiet: Qt.rgba(Theme.Palette.inkFaint.r, Theme.Palette.inkFaint.g, Theme.Palette.inkFaint.b, 0.45)
        them: Theme.Palette.them
        visible: line.stage === "" && line.hasTranscript
        you: Theme.Palette.you
    }
}
