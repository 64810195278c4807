import QtQuick
import Varnic.Theme as Theme

/// The button for everything else, with or without a symbol.
PlainButton {
    id: button

    property bool compact
    property string symbol

    bottomPadding: compact ? 3 : 5
    leftPadding: 9
    opacity: enabled ? 1 : 0.45
    rightPadding: 9
    topPadding: compact ? 3 : 5

    background: Rectangle {
        color: button.down || button.hovered ? Theme.Palette.washHover : Theme.Palette.wash
        radius: Theme.Radius.control

        Behavior on color  {
            ColorAnimation {
                duration: Theme.Motion.press
                easing.type: Easing.OutQuad
            }
        }
    }
    contentItem: Item {
        implicitHeight: childrenRect.height
        implicitWidth: childrenRect.width

        Row {
            anchors.centerIn: parent
            spacing: 5

            Theme.Symbol {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.Palette.ink
                name: button.symbol
                size: button.compact ? 11 : 12
                visible: button.symbol !== ""
                weight: Font.Medium
            }

            Text {
                color: Theme.Palette.ink
                font: Theme.Typo.system(button.compact ? 12 : 13, Font.Medium)
                text: button.text
                visible: text !== ""
            }
        }
    }
}
