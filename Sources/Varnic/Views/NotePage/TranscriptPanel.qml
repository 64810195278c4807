import QtQuick
import QtQuick.Templates as T
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What was said, turn by turn, to read, search and play from.
Rectangle {
    id: panel

    /// Whether it has come to its first place, and moves from here on.
    readonly property bool isPlaced: placed.running === false && width > 0
    required property NoteModel note
    required property CallPlayer player

    /// Scrolls to what is said where the player is.
    function reveal(): void {
        const row = transcript.rowAt(player.time);
        show(row, transcript.playedPart(row));
    }
    function show(row: int, part: real): void {
        if (row < 0) {
            return;
        }
        glide.stop();
        const from = list.contentY;
        const isNear = list.itemAtIndex(row) !== null;
        list.positionViewAtIndex(row, ListView.Center);
        glide.to = list.contentY + transcript.fromMiddle(part, list.itemAtIndex(row)?.height ?? 0, list.height);
        list.contentY = isNear ? from : glide.to;
        // How high the rows in between are is only guessed: on the way past them the place would be another one.
        glide.running = isNear;
    }

    Accessible.name: "Transcript"
    Accessible.role: Accessible.Pane
    color: Theme.Palette.sidebar
    visible: note.transcriptShown || x < parent.width

    Timer {
        id: placed

        interval: 0
        running: true
    }

    Rectangle {
        color: Theme.Palette.rule
        height: parent.height
        width: 1
    }

    Item {
        id: head

        height: 44
        width: parent.width

        Text {
            Accessible.ignored: true
            anchors.left: parent.left
            anchors.leftMargin: Theme.Space.l
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.ink
            font: Theme.Typo.uiStrong
            text: "Transcript"
        }

        Theme.Label {
            anchors.right: parent.right
            anchors.rightMargin: Theme.Space.l
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            objectName: "turnCount"
            text: transcript.countText
        }
    }

    Theme.SearchField {
        id: search

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.l
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.l
        anchors.top: head.bottom
        enabled: panel.note.transcriptShown
        objectName: "filter"
        placeholderText: "Find in transcript"

        Keys.onDownPressed: list.forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        id: line

        anchors.top: search.bottom
        anchors.topMargin: Theme.Space.s
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }

    Theme.Label {
        anchors.left: parent.left
        anchors.margins: Theme.Space.l
        anchors.right: parent.right
        anchors.top: line.bottom
        color: Theme.Palette.inkFaint
        font: Theme.Typo.ui
        text: transcript.placeholder
        wrapMode: Text.Wrap
    }

    ListView {
        id: list

        Accessible.name: "Turns"
        Accessible.role: Accessible.List
        activeFocusOnTab: panel.note.transcriptShown && count > 0
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.s
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.s
        anchors.top: line.bottom
        bottomMargin: Theme.Space.l
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        highlightMoveDuration: Theme.Motion.snappy
        keyNavigationEnabled: true
        objectName: "turns"
        spacing: Theme.Space.s
        topMargin: Theme.Space.m

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }
        delegate: TurnRow {
            isMarked: list.activeFocus && ListView.isCurrentItem
            needle: transcript.filter
            width: list.width

            onChosen: {
                list.currentIndex = index;
                panel.player.seek(start, true);
            }
        }
        model: TranscriptModel {
            id: transcript

            filter: search.text
            note: panel.note
            playing: panel.player.playing
            time: panel.player.time

            // Whoever has scrolled away from what is being said is left there until the next turn.
            onFollowedPartChanged: if (glide.running || list.contentY === glide.to) {
                panel.show(followedRow, followedPart);
            }
            onFound: panel.show(0, foundPart(0))
            onFollowedRowChanged: panel.show(followedRow, followedPart)
        }

        Theme.RowOrder {
            listView: list
        }

        Keys.onPressed: event => listKeys.take(event)
        Keys.onEnterPressed: (currentItem as TurnRow)?.chosen()
        Keys.onReturnPressed: (currentItem as TurnRow)?.chosen()
        Keys.onSpacePressed: panel.player.toggle()
        onActiveFocusChanged: if (activeFocus && currentIndex < 0) {
            currentIndex = 0;
        }

        Theme.ScrollKeys {
            id: listKeys

            page: list
            step: 0
        }

        NumberAnimation {
            id: glide

            duration: Theme.Motion.layout
            easing.type: Theme.Motion.easing
            objectName: "glide"
            property: "contentY"
            target: list
        }
    }
}
