import QtQuick
import QtQuick.Layouts
import Varnic.Theme as Theme

/// Secondary text, gone where there is none.
Text {
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    Layout.fillWidth: true
    color: Theme.Palette.inkSoft
    font: Theme.Typo.ui
    horizontalAlignment: Text.AlignHCenter
    textFormat: Text.PlainText
    visible: text !== ""
    wrapMode: Text.Wrap
}
