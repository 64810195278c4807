import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A text of one line. Its placeholder is its name for assistive programs unless it gets another.
T.TextField {
    id: field

    Accessible.name: placeholderText
    Accessible.role: Accessible.EditableText
    color: Theme.Palette.ink
    font: Theme.Typo.ui
    implicitHeight: 30
    leftPadding: 10
    rightPadding: 10
    selectByMouse: true
    selectedTextColor: Theme.Palette.ink
    selectionColor: Theme.Palette.selection
    validator: Theme.OneLine {
    }
    verticalAlignment: TextInput.AlignVCenter

    background: Rectangle {
        border.color: field.activeFocus ? Theme.Palette.you : Theme.Palette.rule
        border.width: field.activeFocus ? 2 : 1
        color: Theme.Palette.surface
        radius: Theme.Radius.control
    }

    Text {
        Accessible.ignored: true
        color: Theme.Palette.inkFaint
        elide: Text.ElideRight
        font: field.font
        height: parent.height
        text: field.placeholderText
        verticalAlignment: Text.AlignVCenter
        visible: field.text === "" && field.preeditText === ""
        width: parent.width - field.leftPadding - field.rightPadding
        x: field.leftPadding
    }
}
