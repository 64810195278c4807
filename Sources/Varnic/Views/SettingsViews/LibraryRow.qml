import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// Where the library lies, and what can be done with it as a whole.
FormRow {
    name: SettingsWindow.LibraryFolder

    Text {
        Accessible.ignored: true
        color: Theme.Palette.ink
        font: Theme.Typo.ui
        text: "Library"
    }

    Text {
        Accessible.description: "Library"
        Accessible.name: text
        Accessible.role: Accessible.StaticText
        color: Theme.Palette.inkSoft
        elide: Text.ElideMiddle
        font: Theme.Typo.caption
        text: LibraryPlace.folder
        textFormat: Text.PlainText
        width: parent.width
    }

    Row {
        spacing: Theme.Space.s
        visible: !LibraryPlace.isMoving

        Theme.QuietButton {
            text: "Import a Recording…"

            onClicked: RecordingSettings.importRecording()
        }

        Theme.QuietButton {
            text: "Show in Files"

            onClicked: LibraryPlace.show()
        }

        Theme.QuietButton {
            id: change

            help: "Move the library, or use another one"
            text: "Change Folder…"

            onClicked: LibraryPlace.change()
        }
    }

    Row {
        spacing: Theme.Space.m
        visible: LibraryPlace.isMoving

        Theme.ProgressLine {
            anchors.verticalCenter: parent.verticalCenter
            name: "Moving the library"
            value: LibraryPlace.progress
            width: 240
        }

        Theme.QuietButton {
            compact: true
            text: "Stop Moving"

            onClicked: LibraryPlace.cancel()
        }
    }

    SymbolLine {
        symbol: LibraryPlace.isMoved ? "checkmark.circle" : LibraryPlace.offersOther ? "info.circle" : "exclamationmark.triangle"
        symbolColor: LibraryPlace.isMoved ? Theme.Palette.ok : LibraryPlace.offersOther ? Theme.Palette.you : Theme.Palette.warn
        text: LibraryPlace.sentence
        visible: text !== ""
        width: parent.width
    }

    Row {
        spacing: Theme.Space.s
        visible: LibraryPlace.offersOther

        Theme.QuietButton {
            text: "Use This Library"

            onClicked: {
                // These buttons go.
                change.forceActiveFocus(Qt.TabFocusReason);
                LibraryPlace.useOther();
            }
        }

        Theme.QuietButton {
            text: "Cancel"

            onClicked: {
                change.forceActiveFocus(Qt.TabFocusReason);
                LibraryPlace.keepThis();
            }
        }
    }
}
