import QtQuick
import Varnic.Note
import Varnic.NotePage
import Varnic.Theme as Theme

/// What can be done with the open note.
Item {
    id: toolbar

    /// Whether the buttons have room for their labels.
    readonly property bool labelled: exporter.labelledWidth + more.labelledWidth + (note.isCall ? transcript.labelledWidth + buttons.spacing : 0) + buttons.spacing + 2 * Theme.Space.m <= width
    required property NoteModel note
    required property CallPlayer player

    implicitHeight: 44

    Shortcut {
        enabled: toolbar.note.isCall
        sequence: "Alt+T"

        onActivated: toolbar.note.transcriptShown = !toolbar.note.transcriptShown
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.m
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        ToolbarButton {
            id: exporter

            help: "Export as Markdown, PDF, RTF or Word"
            labelled: toolbar.labelled
            objectName: "export"
            symbol: "square.and.arrow.up"
            text: "Export"

            onClicked: exportMenu.popup(exporter, exporter.width - exportMenu.width, exporter.height + 4)

            ExportMenu {
                id: exportMenu

                note: toolbar.note
            }
        }

        ToolbarButton {
            id: transcript

            help: "Show or hide the transcript (Alt+T)"
            isOn: toolbar.note.transcriptShown
            isSwitch: true
            labelled: toolbar.labelled
            objectName: "transcriptButton"
            symbol: "sidebar.right"
            text: "Transcript"
            visible: toolbar.note.isCall

            onClicked: toolbar.note.transcriptShown = !toolbar.note.transcriptShown
        }

        ToolbarButton {
            id: more

            help: "More"
            labelled: toolbar.labelled
            objectName: "more"
            symbol: "ellipsis.circle"
            text: "More"

            onClicked: moreMenu.popup(more, more.width - moreMenu.width, more.height + 4)

            MoreMenu {
                id: moreMenu

                note: toolbar.note
                player: toolbar.player
            }
        }
    }
}
