import QtQuick
import Varnic.Theme as Theme

/// A symbol and two lines in place of a list.
Column {
    id: message

    required property string detail
    required property real size
    required property string symbol
    required property string title

    spacing: 6

    Theme.Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.Palette.inkFaint
        name: message.symbol
        size: message.size
    }

    Theme.Label {
        color: Theme.Palette.inkSoft
        font: Theme.Typo.uiStrong
        horizontalAlignment: Text.AlignHCenter
        text: message.title
        textFormat: Text.PlainText
        width: parent.width
        wrapMode: Text.Wrap
    }

    Theme.Label {
        color: Theme.Palette.inkFaint
        font: Theme.Typo.caption
        horizontalAlignment: Text.AlignHCenter
        text: message.detail
        width: parent.width
        wrapMode: Text.Wrap
    }
}
