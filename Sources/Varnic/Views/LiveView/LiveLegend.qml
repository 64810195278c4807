import QtQuick
import Varnic.LiveView
import Varnic.Theme as Theme

/// Which ink is whose, how loud each side is, and what is wrong.
Column {
    spacing: Theme.Space.s

    Row {
        spacing: Theme.Space.xl

        LiveSideView {
            level: LiveCall.youLevel
            side: LiveCall.you
            tint: Theme.Palette.you
        }

        LiveSideView {
            level: LiveCall.themLevel
            side: LiveCall.them
            tint: Theme.Palette.them
        }
    }

    WarningLabel {
        objectName: "warning"
        text: LiveCall.warning
        visible: text !== ""
        width: parent.width
    }
}
