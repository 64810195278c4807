import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// An entry of a menu, with its keys at the right. One that is not visible takes no place.
T.MenuItem {
    id: item

    /// It takes something away.
    property bool isDestructive
    /// As the user reads them; may be empty.
    property string keys
    /// Before the text; may be empty.
    property string symbol

    Accessible.description: keys
    Accessible.name: text
    Accessible.role: Accessible.MenuItem
    font: Theme.Typo.ui
    height: visible ? implicitHeight : 0
    implicitHeight: 28
    implicitWidth: 220

    Accessible.onPressAction: {
        if (subMenu) {
            subMenu.popup(subMenu.itemAt(0));
        } else {
            triggered();
        }
    }

    arrow: Theme.Symbol {
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkSoft
        name: "chevron.right"
        size: 11
        visible: item.subMenu !== null
    }
    background: Rectangle {
        color: item.highlighted && item.enabled ? Theme.Palette.wash : "transparent"
        radius: 5
    }
    contentItem: Item {
        opacity: item.enabled ? 1 : 0.45

        Theme.Symbol {
            anchors.left: parent.left
            anchors.leftMargin: Theme.Space.m
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.inkSoft
            name: item.symbol
            size: 13
            visible: item.symbol !== ""
        }

        Text {
            anchors.left: parent.left
            anchors.leftMargin: item.symbol === "" ? Theme.Space.m : Theme.Space.m + 22
            anchors.verticalCenter: parent.verticalCenter
            color: item.isDestructive ? Theme.Palette.record : Theme.Palette.ink
            font: item.font
            text: item.text
        }

        Text {
            anchors.right: parent.right
            anchors.rightMargin: Theme.Space.m
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            text: item.keys
        }
    }
    indicator: Theme.Symbol {
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.m
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkSoft
        name: "checkmark"
        size: 11
        visible: item.checkable && item.checked
    }
}
