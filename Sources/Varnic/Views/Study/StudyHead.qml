import QtQuick
import QtQuick.Layouts
import Varnic.Study
import Varnic.Theme as Theme

/// Which deck is asked, how much is left of it, and the ways back and out.
RowLayout {
    id: head

    required property StudyModel study

    /// Moves the keyboard to the way out.
    function focusDone() {
        done.forceActiveFocus();
    }

    spacing: Theme.Space.s

    Column {
        Layout.fillWidth: true

        Theme.Heading {
            color: Theme.Palette.ink
            elide: Text.ElideRight
            font: Theme.Typo.subheading
            level: 1
            text: head.study.title
            textFormat: Text.PlainText
            width: parent.width
        }

        Theme.Label {
            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            text: "Flashcards · " + head.study.toGo
        }
    }

    Theme.QuietButton {
        help: "Take the last grade back (Ctrl+Z)"
        text: "Undo"
        visible: head.study.canUndo

        onClicked: head.study.undo()
    }

    Theme.QuietButton {
        id: done

        text: "Done"

        onClicked: head.study.close()
    }
}
