import QtQuick
import Varnic.Ink
import Varnic.LibraryViews
import Varnic.LiveView
import Varnic.Theme as Theme

/// A note in the list, or the recording that runs.
ListRow {
    id: row

    readonly property color chipGround: isCurrent ? Theme.Palette.surface : Theme.Palette.wash
    required property string cards
    required property string date
    required property bool hasTranscript
    required property callInk ink
    required property int index
    required property bool isCall
    required property bool isLive
    required property bool isPinned
    required property string length
    required property string noteId
    required property string preview
    required property string spoken
    required property string stage
    required property string title
    required property string todos

    /// Opens the note, and leaves the keyboard with the list.
    function choose() {
        ListView.view.forceActiveFocus(Qt.MouseFocusReason);
        Library.open(noteId);
    }

    Accessible.name: isLive ? "Recording now" : spoken
    Accessible.selectable: true
    Accessible.selected: isCurrent
    implicitHeight: (isLive ? live.height : content.implicitHeight) + 12

    Accessible.onPressAction: choose()
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    ListGround {
        anchors.fill: parent
        isCurrent: row.isCurrent
        isFocused: row.isFocused
        isHovered: hover.hovered
    }

    Loader {
        id: live

        active: row.isLive
        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter

        sourceComponent: LiveRow {
        }
    }

    Column {
        id: content

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.top: parent.top
        anchors.topMargin: 6
        spacing: 5
        visible: !row.isLive

        Item {
            height: name.implicitHeight
            width: parent.width

            Theme.Symbol {
                id: pin

                anchors.verticalCenter: parent.verticalCenter
                color: Theme.Palette.inkFaint
                name: "pin.fill"
                size: 9
                visible: row.isPinned
            }

            Text {
                id: name

                Accessible.ignored: true
                anchors.left: parent.left
                anchors.leftMargin: row.isPinned ? pin.width + 4 : 0
                anchors.right: date.left
                anchors.rightMargin: Theme.Space.s
                color: Theme.Palette.ink
                elide: Text.ElideRight
                font: Theme.Typo.rowTitle
                maximumLineCount: 1
                text: row.title
                textFormat: Text.PlainText
            }

            Text {
                id: date

                Accessible.ignored: true
                anchors.baseline: name.baseline
                anchors.right: parent.right
                color: Theme.Palette.inkFaint
                font: Theme.Typo.caption
                text: row.date
            }
        }

        Text {
            Accessible.ignored: true
            color: Theme.Palette.inkSoft
            elide: Text.ElideRight
            font: Theme.Typo.caption
            maximumLineCount: 2
            text: row.preview
            textFormat: Text.PlainText
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }

        CallLine {
            hasTranscript: row.hasTranscript
            ink: row.ink
            stage: row.stage
            visible: row.isCall
            width: parent.width
        }

        Row {
            spacing: 6
            visible: row.length !== "" || row.cards !== ""

            Theme.Chip {
                Accessible.ignored: true
                color: row.chipGround
                symbol: "phone.arrow.down.left"
                text: row.length
                visible: text !== ""
            }

            Theme.Chip {
                Accessible.ignored: true
                color: row.chipGround
                symbol: "checkmark.square"
                text: row.todos
                visible: text !== ""
            }

            Theme.Chip {
                Accessible.ignored: true
                color: row.chipGround
                symbol: "rectangle.on.rectangle.angled"
                text: row.cards
                visible: text !== ""
            }
        }
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: row.choose()
    }
}
