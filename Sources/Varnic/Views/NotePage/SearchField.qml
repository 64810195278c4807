import QtQuick
import Varnic.Theme as Theme

/// A field for what is looked for. Escape empties it, Down leaves it for what was found.
Rectangle {
    id: field

    required property string placeholder
    readonly property alias text: input.text

    signal leaving

    border.color: input.activeFocus ? Theme.Palette.you : Theme.Palette.rule
    border.width: 1
    color: Theme.Palette.surface
    implicitHeight: 28
    radius: Theme.Radius.control - 1

    Theme.Symbol {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkFaint
        name: "magnifyingglass"
        size: 12
        x: 8
    }

    TextInput {
        id: input

        Accessible.name: field.placeholder
        Accessible.role: Accessible.EditableText
        activeFocusOnTab: true
        anchors.verticalCenter: parent.verticalCenter
        clip: true
        color: Theme.Palette.ink
        font: Theme.Typo.ui
        objectName: "filter"
        selectByMouse: true
        selectedTextColor: Theme.Palette.ink
        selectionColor: Theme.Palette.youWash
        width: parent.width - x - 8
        x: 28

        Keys.onDownPressed: field.leaving()
        Keys.onEscapePressed: clear()

        Text {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.inkFaint
            elide: Text.ElideRight
            font: Theme.Typo.ui
            text: field.placeholder
            visible: input.length === 0 && input.preeditText === ""
            width: parent.width
        }
    }
}
