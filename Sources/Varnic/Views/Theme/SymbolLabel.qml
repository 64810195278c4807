import QtQuick
import Varnic.Theme as Theme

/// A symbol and a text beside it, in the middle of their place; either may be missing. A text that has no room is cut.
Item {
    id: label

    property color color: Theme.Palette.ink
    property font font: Theme.Typo.ui
    /// Whether the text shows beside a symbol.
    property bool labelled: true
    /// The width that it has with its text.
    readonly property real labelledWidth: (symbol === "" ? 0 : sign.width + spacing) + words.implicitWidth
    property real spacing: 5
    property string symbol
    /// The size of the type that the symbol is drawn like, in points.
    property real symbolSize: 12
    property int symbolWeight: Font.Medium
    property string text
    /// What the symbol takes.
    readonly property real beforeText: symbol === "" ? 0 : sign.width + (words.visible ? spacing : 0)

    implicitHeight: text === "" ? row.implicitHeight : words.implicitHeight
    implicitWidth: labelled && text !== "" ? labelledWidth : sign.width

    Row {
        id: row

        anchors.centerIn: parent
        spacing: label.spacing

        Theme.Symbol {
            id: sign

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
            elide: Text.ElideRight
            font: label.font
            text: label.text
            visible: label.labelled && text !== ""
            width: Math.min(implicitWidth, Math.ceil(label.width - label.beforeText))
        }
    }
}
