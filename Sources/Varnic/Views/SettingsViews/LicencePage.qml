import QtQuick
import Varnic.Theme as Theme

/// A licence in full, which can be read by keyboard.
Column {
    id: page

    /// What assistive programs are told: the text without its marks.
    required property string spoken
    property alias text: words.text
    property alias textFormat: words.textFormat

    signal closed

    spacing: Theme.Space.m
    width: parent?.width ?? 0

    onVisibleChanged: {
        if (visible) {
            back.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Theme.QuietButton {
        id: back

        compact: true
        symbol: "chevron.left"
        text: "Back"

        onClicked: page.closed()
    }

    TextEdit {
        id: words

        Accessible.name: page.spoken
        Accessible.role: Accessible.StaticText
        color: Theme.Palette.ink
        font: words.textFormat === TextEdit.MarkdownText ? Theme.Typo.ui : Theme.Typo.stamp
        readOnly: true
        selectByMouse: true
        selectedTextColor: Theme.Palette.ink
        selectionColor: Theme.Palette.selection
        width: parent.width
        wrapMode: TextEdit.Wrap
    }
}
