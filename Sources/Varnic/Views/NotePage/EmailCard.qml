import QtQuick
import QtQuick.Layouts
import Varnic.Note
import Varnic.Theme as Theme

/// The follow-up email that the call's digest drafted, to be changed and taken elsewhere.
Theme.Card {
    id: card

    property bool expanded: false
    required property NoteModel note

    padding: Theme.Space.m

    ColumnLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.Space.s

            Theme.Symbol {
                id: sign

                color: Theme.Palette.inkSoft
                name: "envelope"
                size: 15
            }

            Theme.Heading {
                id: title

                Layout.fillWidth: true
                color: Theme.Palette.ink
                elide: Text.ElideRight
                font: Theme.Typo.subheading
                text: "Follow-up email"
            }

            EmailActions {
                id: actions

                labelled: sign.width + title.implicitWidth + labelledWidth + folder.width + 3 * Theme.Space.s <= card.availableWidth
                note: card.note
            }

            Theme.IconButton {
                id: folder

                help: card.expanded ? "Collapse" : "Expand"
                symbol: card.expanded ? "chevron.up" : "chevron.down"

                onClicked: card.expanded = !card.expanded
            }
        }

        Item {
            Layout.fillWidth: true
            clip: true
            implicitHeight: card.expanded ? draft.implicitHeight + Theme.Space.m : 0
            visible: implicitHeight > 0

            Behavior on implicitHeight  {
                NumberAnimation {
                    duration: Theme.Motion.layout
                    easing.type: Theme.Motion.easing
                }
            }

            Column {
                id: draft

                spacing: Theme.Space.s
                width: parent.width
                y: Theme.Space.m

                Field {
                    Accessible.name: "Subject"
                    font: Theme.Typo.uiStrong
                    placeholder: "Subject"
                    text: card.note.emailSubject
                    width: parent.width

                    onEdited: text => card.note.emailSubject = text
                    onReturned: goOn()
                }

                Rectangle {
                    color: Theme.Palette.rule
                    height: 1
                    width: parent.width
                }

                Field {
                    Accessible.name: "Email"
                    font: Theme.Typo.ui
                    height: Math.max(180, implicitHeight)
                    lineBreaks: true
                    text: card.note.emailBody
                    width: parent.width

                    onEdited: text => card.note.emailBody = text
                }
            }
        }
    }
}
