import QtQuick
import Varnic.Theme as Theme

/// How much of the talking was yours.
Row {
    id: talk

    required property int percent
    /// 0 to 1.
    required property real share

    Accessible.name: "You spoke " + percent + " percent of the time"
    Accessible.role: Accessible.StaticText
    spacing: 6

    HoverHandler {
        id: hover
    }

    Theme.HelpTip {
        text: "You spoke " + talk.percent + "% of the time"
        visible: hover.hovered
    }

    Rectangle {
        id: bar

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.them
        height: 4
        radius: 2
        width: 64

        Rectangle {
            color: Theme.Palette.you
            height: parent.height
            objectName: "yourBar"
            radius: 2
            width: Math.max(bar.width * talk.share - 0.75, 2)
        }
    }

    Text {
        Accessible.ignored: true
        color: Theme.Palette.inkFaint
        font: Theme.Typo.caption
        text: talk.percent + "% you"
    }
}
