import QtQuick
import Varnic.Theme as Theme

/// Text to be read and copied, not changed.
TextEdit {
    Accessible.ignored: text === ""
    Accessible.name: text
    Accessible.readOnly: true
    Accessible.role: Accessible.StaticText
    color: Theme.Palette.ink
    font: Theme.Typo.body
    readOnly: true
    selectByMouse: true
    selectedTextColor: color
    selectionColor: Theme.Palette.selection
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
}
