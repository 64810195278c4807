import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// What can be done with the open note.
Item {
    id: toolbar

    required property NoteModel note

    implicitHeight: 44

    Shortcut {
        enabled: toolbar.note.isCall
        sequence: "Ctrl+Alt+T"

        onActivated: toolbar.note.transcriptShown = !toolbar.note.transcriptShown
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.m
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Theme.IconButton {
            id: exporter

            Accessible.name: "Export"
            objectName: "export"
            help: "Export as Markdown, PDF, RTF or Word"
            size: 32
            symbol: "square.and.arrow.up"

            onClicked: exportMenu.popup(exporter, exporter.width - exportMenu.width, exporter.height + 4)

            ExportMenu {
                id: exportMenu

                note: toolbar.note
            }
        }

        Theme.IconButton {
            Accessible.name: "Transcript"
            help: "Show or hide the transcript (Ctrl+Alt+T)"
            isOn: toolbar.note.transcriptShown
            isSwitch: true
            objectName: "transcriptButton"
            size: 32
            symbol: "sidebar.right"
            visible: toolbar.note.isCall

            onClicked: toolbar.note.transcriptShown = !toolbar.note.transcriptShown
        }

        Theme.IconButton {
            id: more

            Accessible.name: "More"
            help: "More"
            size: 32
            symbol: "ellipsis.circle"

            onClicked: moreMenu.popup(more, more.width - moreMenu.width, more.height + 4)

            MoreMenu {
                id: moreMenu

                note: toolbar.note
            }
        }
    }
}
