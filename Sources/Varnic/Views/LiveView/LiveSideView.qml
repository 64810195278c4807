import QtQuick
import Varnic.LiveView
import Varnic.Theme as Theme

/// One side of the call in the legend: its ink, its name, what is recorded of it and how loud it is.
Row {
    id: view

    /// 0 to 1.
    required property real level
    required property liveSide side
    required property color tint

    Accessible.description: side.detail
    Accessible.name: side.name
    Accessible.role: Accessible.StaticText
    spacing: Theme.Space.s

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        color: view.side.isOn ? view.tint : Theme.Palette.inkFaint
        height: 3
        radius: 1.5
        width: 14
    }

    Text {
        id: name

        Accessible.ignored: true
        color: Theme.Palette.ink
        font: Theme.Typo.captionStrong
        text: view.side.name
    }

    Text {
        Accessible.ignored: true
        anchors.baseline: name.baseline
        color: Theme.Palette.inkFaint
        font: Theme.Typo.caption
        text: view.side.detail
        visible: view.side.isOn
    }

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.wash
        height: 4
        radius: 2
        visible: view.side.isOn
        width: 56

        Rectangle {
            color: view.tint
            height: parent.height
            opacity: 0.75
            radius: 2
            width: Math.round(parent.width * Math.min(view.level, 1))
        }
    }

    WarningLabel {
        anchors.baseline: name.baseline
        text: view.side.detail
        visible: !view.side.isOn
    }
}
