import QtQuick
import Varnic.Ink
import Varnic.LiveView
import Varnic.Theme as Theme

/// The page shown while a call is recorded.
Rectangle {
    id: page

    color: Theme.Palette.paper

    LiveHeader {
        id: header

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.xl
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.xl
        anchors.top: parent.top
        anchors.topMargin: Theme.Space.l

        onDiscardAsked: discard.open()
    }

    NibLine {
        id: ink

        anchors.left: header.left
        anchors.right: header.right
        anchors.top: header.bottom
        anchors.topMargin: Theme.Space.s + Theme.Space.l
        height: 132
        history: LiveCall.ink
        objectName: "liveInk"
        showNib: true
    }

    LiveLegend {
        id: legend

        anchors.left: header.left
        anchors.right: header.right
        anchors.top: ink.bottom
        anchors.topMargin: Theme.Space.l
    }

    Rectangle {
        id: divider

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: legend.bottom
        anchors.topMargin: Theme.Space.s
        color: Theme.Palette.rule
        height: 1
    }

    LiveTranscriptView {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: divider.bottom
    }

    DiscardDialog {
        id: discard

        objectName: "discardDialog"
    }
}
