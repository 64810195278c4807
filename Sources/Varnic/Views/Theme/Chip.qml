import QtQuick
import Varnic.Theme as Theme

/// A small fact about a thing, with or without a symbol.
Rectangle {
    id: chip

    property string symbol
    property string text

    Accessible.name: text
    Accessible.role: Accessible.StaticText
    color: Theme.Palette.wash
    implicitHeight: label.implicitHeight + 3
    implicitWidth: row.implicitWidth + 12
    radius: height / 2

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 4

        Theme.Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.inkSoft
            name: chip.symbol
            size: 9.5
            visible: chip.symbol !== ""
            weight: Font.DemiBold
        }

        Text {
            id: label

            Accessible.ignored: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.system(10.5, Font.Medium)
            text: chip.text
        }
    }
}
