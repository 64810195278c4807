import QtQuick
import Varnic.Theme as Theme

/// A symbol and a text beside it, in the middle of their place; either may be missing.
Item {
    id: label

    property color color: Theme.Palette.ink
    property font font: Theme.Typo.ui
    property real spacing: 5
    property string symbol
    /// The size of the type that the symbol is drawn like, in points.
    property real symbolSize: 12
    property int symbolWeight: Font.Medium
    property string text

    implicitHeight: text === "" ? row.implicitHeight : words.implicitHeight
    implicitWidth: row.implicitWidth

    Row {
        id: row

        anchors.centerIn: parent
        spacing: label.spacing

        Theme.Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: label.color
            name: label.symbol
            size: label.symbolSize
            visible: label.symbol !== ""
            weight: label.symbolWeight
        }

        Text {
            id: words

            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            color: label.color
            font: label.font
            text: label.text
            visible: text !== ""
        }
    }
}
