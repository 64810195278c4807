import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The brand, the record button and the sections.
Rectangle {
    id: sidebar

    color: Theme.Palette.sidebar

    Row {
        id: brand

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.l
        anchors.top: parent.top
        anchors.topMargin: Theme.Space.s
        height: 28
        spacing: Theme.Space.s

        Theme.NibMark {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.you
            paper: Theme.Palette.sidebar
            size: 20
        }

        Theme.Heading {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.ink
            font: Theme.Typo.system(17, Font.DemiBold)
            level: 1
            text: "Varnic"
        }
    }

    RecordButton {
        id: record

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.l
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.l
        anchors.top: brand.bottom
        anchors.topMargin: Theme.Space.m
    }

    SectionList {
        anchors.bottom: privacy.top
        anchors.left: parent.left
        anchors.margins: Theme.Space.s
        anchors.right: parent.right
        anchors.top: record.bottom
        anchors.topMargin: Theme.Space.m
    }

    Theme.Label {
        id: privacy

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: Theme.Space.l
        anchors.right: parent.right
        color: Theme.Palette.inkFaint
        font: Theme.Typo.caption
        text: Library.privacyText
        wrapMode: Text.Wrap
    }
}
