import QtQuick
import Varnic.Theme as Theme

/// Words that lead somewhere else.
PlainButton {
    id: link

    bottomPadding: 2
    topPadding: 2

    contentItem: Text {
        color: Theme.Palette.you
        font.family: Theme.Typo.ui.family
        font.pointSize: Theme.Typo.ui.pointSize
        font.underline: link.hovered
        text: link.text
    }

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
