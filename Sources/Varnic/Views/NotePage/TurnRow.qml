import QtQuick
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

/// One turn of a transcript.
Rectangle {
    id: turn

    required property int index
    required property bool isCurrent
    /// The keyboard is on it.
    property bool isMarked: false
    required property bool isYou
    required property string name
    property string needle
    readonly property color side: isYou ? Theme.Palette.you : Theme.Palette.them
    required property string stamp
    required property double start
    required property string words

    /// It is to be played.
    signal chosen

    Accessible.description: "Play from here"
    Accessible.name: name + ", " + stamp + ": " + words
    Accessible.onPressAction: chosen()
    Accessible.role: Accessible.ListItem
    color: isCurrent ? (isYou ? Theme.Palette.youWash : Theme.Palette.themWash) : "transparent"
    implicitHeight: label.y + label.implicitHeight + 4
    radius: 6

    Theme.FocusRing {
        anchors.margins: 0
        corner: 3
        visible: turn.isMarked
    }

    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
    }

    TapHandler {
        onTapped: turn.chosen()
    }

    Theme.HelpTip {
        text: "Play from here"
        visible: hover.hovered && !label.selectedText
        y: -height - 2
    }

    Rectangle {
        color: turn.side
        height: parent.height - 8
        opacity: turn.isCurrent ? 1 : 0.35
        radius: width / 2
        width: 2.5
        x: Theme.Space.s
        y: 4
    }

    Row {
        id: head

        spacing: 6
        x: label.x
        y: 4

        Text {
            id: speaker

            Accessible.ignored: true
            color: turn.side
            elide: Text.ElideRight
            font: Theme.Typo.captionStrong
            text: turn.name
            width: Math.min(implicitWidth, label.width - 60)
        }

        Text {
            Accessible.ignored: true
            anchors.baseline: speaker.baseline
            color: Theme.Palette.inkFaint
            font: Theme.Typo.stamp
            text: turn.stamp
        }
    }

    ReadText {
        id: label

        Accessible.ignored: true
        font: Theme.Typo.spoken
        objectName: "words"
        text: turn.words
        width: turn.width - x - Theme.Space.s
        x: Theme.Space.s + 12.5
        y: head.y + head.height + 1

        TapHandler {
            onTapped: turn.chosen()
        }
    }

    MatchHighlighter {
        color: Theme.Palette.highlight
        needle: turn.needle
        source: label.textDocument
    }
}
