import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A choice that is on or off.
T.CheckBox {
    id: box

    Accessible.name: text
    implicitHeight: 24
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: 24

    contentItem: Text {
        color: Theme.Palette.ink
        font: Theme.Typo.ui
        text: box.text
        verticalAlignment: Text.AlignVCenter
    }
    indicator: Theme.Symbol {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        color: box.checked ? Theme.Palette.you : Theme.Palette.inkSoft
        name: box.checked ? "checkmark.square.fill" : "square"
        size: 14
    }

    Loader {
        active: box.visualFocus
        anchors.fill: parent

        sourceComponent: Theme.FocusRing {
        }
    }
}
