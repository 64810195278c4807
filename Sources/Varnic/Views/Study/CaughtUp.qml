import QtQuick
import Varnic.Study
import Varnic.Theme as Theme

/// What stands in place of a card when none is left.
Item {
    id: place

    required property StudyModel study

    Column {
        anchors.centerIn: parent
        spacing: Theme.Space.s
        width: parent.width

        Theme.Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.Palette.ok
            name: "checkmark.seal"
            size: 34
        }

        Theme.Label {
            color: Theme.Palette.ink
            font: Theme.Typo.subheading
            horizontalAlignment: Text.AlignHCenter
            text: place.study.endTitle
            width: parent.width
            wrapMode: Text.Wrap
        }

        Theme.Label {
            color: Theme.Palette.inkFaint
            font: Theme.Typo.ui
            horizontalAlignment: Text.AlignHCenter
            text: "Cards come back when they’re due."
            width: parent.width
            wrapMode: Text.Wrap
        }

        Theme.Label {
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            horizontalAlignment: Text.AlignHCenter
            text: place.study.comeback
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
