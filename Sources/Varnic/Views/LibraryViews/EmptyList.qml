import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// What stands in place of an empty list, and what to do about it.
Column {
    objectName: "emptyList"
    padding: Theme.Space.xl
    spacing: Theme.Space.m

    Theme.NibMark {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.Palette.inkFaint
        opacity: 0.7
        paper: Theme.Palette.paper
        size: 30
    }

    Theme.Label {
        color: Theme.Palette.ink
        font: Theme.Typo.subheading
        horizontalAlignment: Text.AlignHCenter
        text: Library.emptyTitle
        width: parent.width - 2 * parent.padding
        wrapMode: Text.Wrap
    }

    Theme.Label {
        color: Theme.Palette.inkFaint
        font: Theme.Typo.ui
        horizontalAlignment: Text.AlignHCenter
        text: Library.emptyDetail
        width: parent.width - 2 * parent.padding
        wrapMode: Text.Wrap
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Theme.Space.s

        Theme.InkButton {
            enabled: RecordAction.isEnabled
            text: "Record Call"
            visible: Library.section !== Library.Notes

            onClicked: RecordAction.toggle()
        }

        Theme.QuietButton {
            text: "New Note"
            visible: Library.section !== Library.Calls

            onClicked: Library.newNote()
        }
    }
}
