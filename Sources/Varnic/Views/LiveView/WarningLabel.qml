import QtQuick
import Varnic.Theme as Theme

/// A sentence that the user should not miss.
Item {
    id: label

    required property string text

    Accessible.name: text
    Accessible.role: Accessible.AlertMessage
    baselineOffset: sentence.baselineOffset
    implicitHeight: sentence.implicitHeight
    implicitWidth: symbol.width + 5 + sentence.implicitWidth

    Theme.Symbol {
        id: symbol

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.warn
        name: "exclamationmark.triangle"
        size: 11.5
    }

    Text {
        id: sentence

        Accessible.ignored: true
        anchors.left: symbol.right
        anchors.leftMargin: 5
        anchors.right: parent.right
        color: Theme.Palette.warn
        elide: Text.ElideRight
        font: Theme.Typo.caption
        text: label.text
    }
}
