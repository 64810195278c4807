import QtQuick
import QtQuick.Controls.Basic
import Varnic.Theme as Theme

/// One thing that can be done with the note.
MenuItem {
    id: item

    /// Takes something away.
    property bool destructive: false

    Accessible.name: text
    Accessible.role: Accessible.MenuItem
    height: visible ? implicitHeight : 0
    implicitHeight: 28
    leftPadding: 10
    rightPadding: 10

    background: Rectangle {
        color: item.highlighted ? Theme.Palette.wash : "transparent"
        radius: 5
    }
    contentItem: Text {
        color: item.destructive ? Theme.Palette.record : Theme.Palette.ink
        font: Theme.Typo.ui
        opacity: item.enabled ? 1 : 0.4
        text: item.text
        verticalAlignment: Text.AlignVCenter
    }
}
