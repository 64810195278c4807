import QtQuick
import Varnic.BlockEditor
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

        page: editor.sheet
    }

    NoteModel {
        id: theNote

        noteId: page.noteId

        onSeekRequested: time => {
            thePlayer.seek(time, false);
            // The panel may just be about to be made.
            Qt.callLater(() => panel.reveal());
        }
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
        player: thePlayer
    }

    BlockEditor {
        id: editor

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: panel.left
        anchors.top: toolbar.bottom
        focus: true
        note: theNote

        footer: NoteFooter {
            bottomPadding: 80
            note: theNote
        }
        header: Item {
            implicitHeight: content.y + content.implicitHeight + (theNote.isCall ? Theme.Space.s : 0)
            width: editor.width

            Connections {
                function onLeftAtTop() {
                    titleField.forceActiveFocus(Qt.BacktabFocusReason);
                }

                target: editor
            }

            Column {
                id: content

                width: editor.columnWidth
                x: (parent.width - width) / 2
                y: Theme.Space.l

                Repeater {
                    model: theNote.isCall ? 1 : 0

                    CallHeader {
                        note: theNote
                        width: content.width
                    }
                }

                TitleField {
                    id: titleField

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
            }
        }
    }

    // Parts the toolbar from what is scrolled up under it.
    Rectangle {
        anchors.left: parent.left
        anchors.right: panel.left
        anchors.top: toolbar.bottom
        color: Theme.Palette.rule
        height: 1
        visible: editor.sheet.contentY > editor.sheet.originY + 1
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
