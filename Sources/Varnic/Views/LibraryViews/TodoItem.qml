import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// A to-do with its box, or the button of the note that the ones below it stand in.
ListRow {
    id: row

    required property string blockId
    required property string due
    required property int index
    required property bool isHeader
    required property bool isYours
    required property string noteId
    required property string ownerName
    required property string text

    function choose() {
        ListView.view.currentIndex = index;
        Library.open(noteId, blockId);
    }

    function markDone() {
        if (!isHeader) {
            Library.markDone(noteId, blockId);
        }
    }

    Accessible.description: due
    Accessible.ignored: isHeader || !isInView
    Accessible.name: text
    LayoutMirroring.childrenInherit: true
    // As in the note.
    LayoutMirroring.enabled: words.effectiveHorizontalAlignment === Text.AlignRight
    implicitHeight: isHeader ? header.implicitHeight + 8 : content.implicitHeight + 8

    Accessible.onPressAction: choose()

    ListGround {
        anchors.fill: parent
        isCurrent: row.isCurrent && row.isFocused
        isFocused: row.isFocused
        isHovered: hover.hovered
        visible: !row.isHeader
    }

    TodoHeader {
        id: header

        anchors.bottom: parent.bottom
        isCurrent: row.isCurrent && row.isFocused
        text: row.text
        visible: row.isHeader && row.isInView
        width: parent.width

        onClicked: row.choose()
    }

    Theme.PlainButton {
        id: box

        Accessible.description: row.text
        Accessible.name: "Mark done"
        anchors.left: parent.left
        anchors.leftMargin: 6
        anchors.top: content.top
        anchors.topMargin: -3
        corner: 4
        focusPolicy: Qt.NoFocus
        implicitHeight: 24
        implicitWidth: 24
        isSwitch: true
        visible: !row.isHeader && row.isInView

        contentItem: Item {
            Theme.Symbol {
                anchors.centerIn: parent
                color: box.hovered ? Theme.Palette.ink : Theme.Palette.inkSoft
                name: box.down ? "checkmark.square" : "square"
                size: 13
            }
        }

        onClicked: row.markDone()
    }

    Column {
        id: content

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 4
        anchors.left: parent.left
        anchors.leftMargin: 34
        anchors.right: parent.right
        anchors.rightMargin: 10
        spacing: 3
        visible: !row.isHeader && row.isInView

        Text {
            id: words

            Accessible.ignored: true
            color: Theme.Palette.ink
            font: Theme.Typo.ui
            text: row.text
            textFormat: Text.PlainText
            width: parent.width
            wrapMode: Text.Wrap
        }

        Theme.FlowLayout {
            spacing: 5
            visible: row.ownerName !== "" || row.due !== ""
            width: parent.width

            Theme.SpeakerTag {
                name: row.ownerName
                visible: row.ownerName !== ""
                you: row.isYours
            }

            Theme.Chip {
                symbol: "calendar"
                text: row.due
                visible: row.due !== ""
            }
        }
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        enabled: !row.isHeader

        onTapped: row.choose()
    }
}
