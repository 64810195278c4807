import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The cards of one note.
ListRow {
    id: row

    required property string due
    required property int index
    required property string noteId
    required property string studyText
    required property string title
    required property string total

    function choose() {
        ListView.view.currentIndex = index;
        Library.open(noteId);
    }

    /// Asks the cards that are due; none may be.
    function study() {
        ListView.view.currentIndex = index;
        if (studyText !== "") {
            Library.study(noteId);
        }
    }

    Accessible.description: due === "" ? total : total + ", " + due
    Accessible.name: title
    implicitHeight: content.implicitHeight + 10

    Accessible.onPressAction: choose()

    ListGround {
        anchors.fill: parent
        isCurrent: row.isCurrent && row.isFocused
        isFocused: row.isFocused
        isHovered: hover.hovered
    }

    Column {
        id: content

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.right: state.left
        anchors.rightMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Text {
            Accessible.ignored: true
            color: Theme.Palette.ink
            elide: Text.ElideRight
            font: Theme.Typo.rowTitle
            text: row.title
            textFormat: Text.PlainText
            width: parent.width
        }

        Text {
            Accessible.ignored: true
            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            text: row.total
        }
    }

    Item {
        id: state

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        implicitHeight: Math.max(button.height, done.height)
        implicitWidth: row.studyText === "" ? done.width : button.width
        visible: row.isInView

        Theme.InkButton {
            id: button

            anchors.verticalCenter: parent.verticalCenter
            focusPolicy: Qt.NoFocus
            objectName: "study"
            text: row.studyText
            visible: text !== ""

            onClicked: row.study()
        }

        Theme.Symbol {
            id: done

            Accessible.name: "All caught up"
            Accessible.role: Accessible.Graphic
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.ok
            name: "checkmark.circle.fill"
            size: 13
            visible: row.due === ""

            HoverHandler {
                id: pointer
            }

            Loader {
                active: pointer.hovered
                anchors.fill: parent

                sourceComponent: Theme.HelpTip {
                    text: "All caught up"
                    visible: true
                }
            }
        }
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: row.choose()
    }
}
