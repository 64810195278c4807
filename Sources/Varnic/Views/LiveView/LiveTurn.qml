import QtQuick
import Varnic.Ink
import Varnic.Theme as Theme

/// What one side says without a break.
Item {
    id: turn

    required property int firm
    required property FreshInk fresh
    required property bool isYou
    required property string name
    required property string spoken
    required property string stamp
    readonly property color tint: isYou ? Theme.Palette.you : Theme.Palette.them
    required property string words

    Accessible.name: spoken
    Accessible.role: Accessible.ListItem
    height: Math.max(line.implicitHeight, stampText.y + stampText.height)
    width: ListView.view ? ListView.view.width : 0

    Item {
        id: column

        height: parent.height
        width: Math.min(parent.width, 760) - 2 * Theme.Space.xl
        x: (parent.width - width) / 2

        Text {
            id: nameText

            Accessible.ignored: true
            anchors.baseline: line.baseline
            color: turn.tint
            font: Theme.Typo.captionStrong
            horizontalAlignment: Text.AlignRight
            text: turn.name
            width: 70
        }

        Text {
            id: stampText

            Accessible.ignored: true
            anchors.top: nameText.bottom
            color: Theme.Palette.inkFaint
            font: Theme.Typo.stamp
            horizontalAlignment: Text.AlignRight
            text: turn.stamp
            width: 70
        }

        InkingLine {
            id: line

            anchors.left: nameText.right
            anchors.leftMargin: Theme.Space.l
            anchors.right: parent.right
            color: turn.tint
            firm: turn.firm
            font: Theme.Typo.liveSpoken
            fresh: turn.fresh
            text: turn.words
        }
    }
}
