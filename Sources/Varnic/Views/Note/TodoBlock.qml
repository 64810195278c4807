import QtQuick
import QtQuick.Layouts
import Varnic.Theme as Theme

/// A to-do with its tick, its owner and when it is due.
RowLayout {
    id: block

    required property string due
    required property bool isDone
    required property bool isYours
    required property string ownerName
    required property string words

    signal toggled

    spacing: Theme.Space.s

    Theme.PlainButton {
        Accessible.description: block.words
        Accessible.name: block.isDone ? "Done" : "Not done"
        Layout.alignment: Qt.AlignTop
        corner: 4
        implicitHeight: 22
        implicitWidth: 20
        isOn: block.isDone
        isSwitch: true
        objectName: "tick"

        background: Item {
        }
        contentItem: Item {
            Theme.Symbol {
                anchors.centerIn: parent
                color: Theme.Palette.inkSoft
                name: block.isDone ? "checkmark.square.fill" : "square"
                size: 16
            }
        }

        onClicked: block.toggled()
    }

    ReadText {
        Layout.fillWidth: true
        color: block.isDone ? Theme.Palette.inkFaint : Theme.Palette.ink
        font.family: Theme.Typo.body.family
        font.pointSize: Theme.Typo.body.pointSize
        font.strikeout: block.isDone
        text: block.words
    }

    Theme.SpeakerTag {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: 4
        name: block.ownerName
        visible: block.ownerName !== ""
        you: block.isYours
    }

    Theme.Chip {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: 4
        symbol: "calendar"
        text: block.due
        visible: block.due !== ""
    }
}
