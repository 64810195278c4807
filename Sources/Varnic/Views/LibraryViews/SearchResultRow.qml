import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The title of a note that matches, or a place in it that does.
ListRow {
    id: row

    required property int index
    required property bool isHeader
    required property string markedText
    required property string stamp
    required property string noteId
    required property string text
    /// Seconds into a call; below 0 for what has no time.
    required property real time

    function choose() {
        ListView.view.currentIndex = index;
        Library.openHit(noteId, time);
    }

    Accessible.description: stamp
    Accessible.name: text
    implicitHeight: words.implicitHeight + (isHeader ? 14 : 8)

    Accessible.onPressAction: choose()
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    ListGround {
        anchors.fill: parent
        isCurrent: row.isCurrent && row.isFocused
        isFocused: row.isFocused
        isHovered: hover.hovered
    }

    Text {
        id: moment

        Accessible.ignored: true
        anchors.baseline: words.baseline
        anchors.left: parent.left
        anchors.leftMargin: 10
        color: Theme.Palette.inkFaint
        font: Theme.Typo.stamp
        text: row.stamp
    }

    Text {
        id: words

        Accessible.ignored: true
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 4
        anchors.left: parent.left
        anchors.leftMargin: row.stamp === "" ? 10 : 16 + moment.implicitWidth
        anchors.right: parent.right
        anchors.rightMargin: 10
        color: row.isHeader ? Theme.Palette.ink : Theme.Palette.inkSoft
        elide: row.isHeader ? Text.ElideRight : Text.ElideNone
        font: row.isHeader ? Theme.Typo.rowTitle : Theme.Typo.caption
        text: row.isHeader ? row.text : Theme.Highlighter.richText(row.markedText, Theme.Palette.highlight)
        textFormat: row.isHeader ? Text.PlainText : Text.RichText
        wrapMode: row.isHeader ? Text.NoWrap : Text.Wrap
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: row.choose()
    }
}
