import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// An entry of the main menu, below the title of its menu if it is the first of it.
Theme.PaperMenuItem {
    id: item

    objectName: "menuEntry"

    required property bool beginsGroup
    required property int index
    required property bool isCheckable
    required property bool isChecked
    required property bool isEnabled
    required property string caption
    required property string menuTitle
    required property string shortcutText

    // No state of an entry says that it is off, or could be on.
    Accessible.description: isCheckable ? (isChecked ? "On" : "Off") : menuTitle !== "" ? shortcutText + " (" + menuTitle + ")" : shortcutText
    checkable: isCheckable
    checked: isChecked
    enabled: isEnabled
    implicitHeight: 28 + topInset
    keys: shortcutText
    text: caption
    topInset: menuTitle !== "" ? (index === 0 ? 22 : 32) : beginsGroup ? 9 : 0
    topPadding: topInset

    onTriggered: {
        checked = Qt.binding(() => isChecked);
        MainMenu.perform(index);
    }

    Rectangle {
        color: Theme.Palette.rule
        height: 1
        visible: (item.menuTitle !== "" && item.index > 0) || item.beginsGroup
        width: parent.width
        y: 4
    }

    Theme.Eyebrow {
        text: item.menuTitle
        visible: text !== ""
        x: Theme.Space.m
        y: item.topInset - height - 3
    }
}
