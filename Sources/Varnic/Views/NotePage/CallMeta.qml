import QtQuick
import QtQuick.Layouts
import Varnic.Ink
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

/// Who spoke, how much, and when; and the call to listen to.
ColumnLayout {
    id: meta

    required property NoteModel note
    required property CallPlayer player

    spacing: Theme.Space.s

    RowLayout {
        spacing: Theme.Space.m

        // In a narrow window the names give way.
        Theme.SpeakerTag {
            Layout.fillWidth: true
            Layout.maximumWidth: Math.min(implicitWidth, 160)
            Layout.minimumWidth: Math.min(implicitWidth, 40)
            name: meta.note.yourName
            you: true
        }

        NameField {
            Layout.fillWidth: true
            Layout.maximumWidth: implicitWidth
            Layout.minimumWidth: 110
            note: meta.note
        }

        Item {
            Layout.fillWidth: true
        }

        TalkShare {
            percent: meta.note.sharePercent
            share: meta.note.share
            visible: meta.note.hasShare
        }
    }

    RowLayout {
        spacing: Theme.Space.s

        PlayButton {
            player: meta.player
        }

        SpeedButton {
            player: meta.player
        }

        InkTimeline {
            Layout.fillWidth: true
            call: meta.note.ink
            objectName: "timeline"
            position: meta.player.time
            seekable: meta.player.available

            onSeek: time => meta.player.seek(time, true)
        }

        Text {
            Accessible.name: "Position " + text
            Accessible.role: Accessible.StaticText
            Layout.preferredWidth: 44
            color: Theme.Palette.inkSoft
            font: Theme.Typo.stamp
            objectName: "stamp"
            horizontalAlignment: Text.AlignRight
            text: meta.player.stamp

            HoverHandler {
                id: hover
            }

            Theme.HelpTip {
                text: "Ten seconds back or on (Alt+Left, Alt+Right)"
                visible: hover.hovered && meta.player.available
            }
        }
    }
}
