import QtQuick
import Varnic.Theme as Theme

/// Settings that belong together: a title with a sentence about it, and the rows on a card.
Column {
    id: section

    property string detail
    default property alias rows: column.data
    property string title

    Accessible.description: detail
    Accessible.name: title
    Accessible.role: Accessible.Grouping
    spacing: Theme.Space.s
    width: parent?.width ?? 0

    Column {
        spacing: 2
        width: parent.width

        Text {
            Accessible.name: text
            Accessible.role: Accessible.Heading
            color: Theme.Palette.ink
            font: Theme.Typo.uiStrong
            text: section.title
            visible: text !== ""
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            color: Theme.Palette.inkSoft
            font: Theme.Typo.caption
            text: section.detail
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }

    Rectangle {
        border.color: Theme.Palette.rule
        border.pixelAligned: false
        border.width: 1 / Screen.devicePixelRatio
        color: Theme.Palette.surface
        height: column.height + 2
        radius: Theme.Radius.card
        width: parent.width

        Column {
            id: column

            width: parent.width
            y: 1
        }
    }
}
