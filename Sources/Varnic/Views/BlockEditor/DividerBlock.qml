import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

/// A line across the note. It can have the focus, to be deleted.
Item {
    id: block

    required property string blockId
    required property EditorSurface surface

    Accessible.focusable: true
    Accessible.name: "Divider"
    Accessible.role: Accessible.Separator
    activeFocusOnTab: true
    implicitHeight: 2 * Theme.Space.m + 1

    BlockField {
        id: field

        blockId: block.blockId
        editor: block
        surface: block.surface
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.Palette.youWash
        radius: Theme.Radius.control
        visible: block.activeFocus || field.isCovered
    }

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }
}
