import QtQuick
import QtQuick.Templates as T
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// One note as a sheet of paper, and beside it the transcript of a call.
FocusScope {
    id: page

    required property string noteId

    Keys.onPressed: event => keys.take(event)

    Theme.ScrollKeys {
        id: keys

        page: sheet
    }

    NoteModel {
        id: theNote

        noteId: page.noteId

        onSeekRequested: time => thePlayer.seek(time, false)
    }

    CallPlayer {
        id: thePlayer

        tracks: theNote.tracks
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.Palette.paper
    }

    NoteToolbar {
        id: toolbar

        anchors.left: parent.left
        anchors.right: panel.left
        note: theNote
    }

    Flickable {
        id: sheet

        objectName: "sheet"
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: panel.left
        anchors.top: toolbar.bottom
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: content.implicitHeight + Theme.Space.l + 80
        contentWidth: width

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }

        // A press beside the text leaves the field that one was in, for the keys to scroll.
        TapHandler {
            onTapped: eventPoint => {
                if (!content.contains(content.mapFromItem(null, eventPoint.scenePosition))) {
                    sheet.forceActiveFocus(Qt.MouseFocusReason);
                }
            }
        }

        Column {
            id: content

            width: Math.min(Theme.PageWidth.max, sheet.width - 2 * Theme.Space.xxl)
            x: (sheet.width - width) / 2
            y: Theme.Space.l

            Repeater {
                model: theNote.isCall ? 1 : 0

                CallHeader {
                    note: theNote
                    width: content.width
                }
            }

            TitleField {
                bottomPadding: theNote.isCall ? Theme.Space.m : Theme.Space.l
                focus: true
                note: theNote
                width: parent.width
            }

            Repeater {
                model: theNote.isCall ? 1 : 0

                CallSection {
                    note: theNote
                    player: thePlayer
                    width: content.width
                }
            }

            BlockList {
                note: theNote
                topPadding: theNote.isCall ? Theme.Space.s : 0
                width: parent.width
            }

            NoteFooter {
                note: theNote
                width: parent.width
            }
        }
    }

    TranscriptPanel {
        id: panel

        /// How much of it is in, 0 to 1. Only this is animated, so that it does not lag behind the window's edge.
        property real part: theNote.transcriptShown ? 1 : 0

        anchors.bottom: parent.bottom
        anchors.top: parent.top
        note: theNote
        player: thePlayer
        width: Math.min(330, page.width * 0.6)
        x: page.width - width * part

        Behavior on part  {
            enabled: panel.isPlaced

            NumberAnimation {
                duration: Theme.Motion.layout
                easing.type: Theme.Motion.easing
            }
        }
    }
}
