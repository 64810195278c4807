import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// The other party's name, to be filled in. One that is too long shows its beginning unless it is typed in.
Rectangle {
    id: capsule

    required property NoteModel note

    border.color: input.activeFocus ? Theme.Palette.them : "transparent"
    border.width: 1
    color: Theme.Palette.themWash
    implicitHeight: input.implicitHeight + 4
    implicitWidth: input.x + note.nameFieldWidth + 7
    radius: height / 2

    HoverHandler {
        id: hover

        cursorShape: Qt.IBeamCursor
    }

    Theme.HelpTip {
        text: "Who was on the other side — used in the transcript and the email greeting"
        visible: hover.hovered
    }

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.them
        height: 6
        radius: 3
        width: 6
        x: 7
    }

    TextInput {
        id: input

        Accessible.description: "Who was on the other side — used in the transcript and the email greeting"
        Accessible.name: "Their name"
        Accessible.role: Accessible.EditableText
        activeFocusOnTab: true
        anchors.verticalCenter: parent.verticalCenter
        clip: true
        color: Theme.Palette.them
        font: Theme.Typo.captionStrong
        objectName: "themName"
        selectByMouse: true
        selectedTextColor: Theme.Palette.them
        selectionColor: Theme.Palette.themWash
        validator: Theme.OneLine {
        }
        text: capsule.note.themName
        width: capsule.width - x - 7
        x: 17

        onActiveFocusChanged: if (!activeFocus)
            cursorPosition = 0
        onTextChanged: if (!activeFocus)
            cursorPosition = 0
        onAccepted: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        onTextEdited: capsule.note.themName = text

        Text {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.them
            font: input.font
            opacity: 0.6
            text: "Add their name"
            visible: input.length === 0 && input.preeditText === ""
        }
    }
}
