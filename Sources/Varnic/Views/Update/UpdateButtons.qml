import QtQuick
import Varnic.Theme as Theme
import Varnic.Update

/// What can be done in the updater's phase. Return does what the default button says.
FocusScope {
    id: buttons

    signal closed

    implicitHeight: row.implicitHeight
    implicitWidth: row.implicitWidth

    Row {
        id: row

        spacing: Theme.Space.s

        Theme.QuietButton {
            focus: !action.visible
            text: "Later"
            visible: UpdateModel.canWait

            onClicked: buttons.closed()
        }

        Theme.InkButton {
            id: action

            focus: visible
            text: UpdateModel.action
            visible: text !== ""

            onClicked: UpdateModel.act()
        }
    }
}
