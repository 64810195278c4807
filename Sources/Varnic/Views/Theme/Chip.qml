import QtQuick
import Varnic.Theme as Theme

/// A small fact about a thing, with or without a symbol.
Rectangle {
    id: chip

    property string symbol
    property string text

    Accessible.ignored: text === ""
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    color: Theme.Palette.wash
    implicitHeight: label.implicitHeight + 3
    implicitWidth: label.implicitWidth + 12
    radius: height / 2

    SymbolLabel {
        id: label

        anchors.centerIn: parent
        color: Theme.Palette.inkSoft
        font: Theme.Typo.system(10.5, Font.Medium)
        spacing: 4
        symbol: chip.symbol
        symbolSize: 9.5
        symbolWeight: Font.DemiBold
        text: chip.text
    }
}
