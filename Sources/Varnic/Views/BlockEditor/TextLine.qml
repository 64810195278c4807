import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

/// A text of a block, to be typed in.
TextEdit {
    id: edit

    required property string blockId
    readonly property alias isCovered: field.isCovered
    property int part: 0
    property string placeholder
    property bool placeholderShown: true
    /// The text as it is stored.
    required property string stored
    required property EditorSurface surface

    Accessible.role: Accessible.EditableText
    activeFocusOnTab: true
    color: Theme.Palette.ink
    font: Theme.Typo.body
    persistentSelection: true
    selectByMouse: true
    selectedTextColor: color
    selectionColor: Theme.Palette.selection
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap

    BlockField {
        id: field

        blockId: edit.blockId
        editor: edit
        part: edit.part
        surface: edit.surface
        text: edit.stored
    }

    Text {
        Accessible.ignored: true
        color: Theme.Palette.inkFaint
        elide: Text.ElideRight
        font: edit.font
        text: edit.placeholder
        visible: edit.placeholderShown && edit.length === 0 && edit.preeditText === ""
        width: parent.width
    }
}
