import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnic.Theme as Theme
import Varnic.Update

/// The updater's phase: what is new and what can be done about it. Texts of a feed are shown as they are, never as
/// markup.
FocusScope {
    id: view

    signal closed

    focus: true
    implicitHeight: column.implicitHeight + 50

    ColumnLayout {
        id: column

        anchors.left: parent.left
        anchors.leftMargin: 26
        anchors.right: parent.right
        anchors.rightMargin: 26
        spacing: 14
        y: 30

        Theme.NibMark {
            Layout.alignment: Qt.AlignHCenter
            size: 64
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
            color: Theme.Palette.ink
            font: Theme.Typo.system(18, Font.Bold)
            horizontalAlignment: Text.AlignHCenter
            text: UpdateModel.title
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }

        Theme.Spinner {
            Layout.alignment: Qt.AlignHCenter
            size: 20
            visible: UpdateModel.isChecking
        }

        DetailText {
            text: UpdateModel.detail
        }

        T.ProgressBar {
            id: bar

            Accessible.name: UpdateModel.title
            Layout.alignment: Qt.AlignHCenter
            implicitHeight: 6
            implicitWidth: 260
            value: UpdateModel.progress
            visible: UpdateModel.isDownloading

            background: Rectangle {
                color: Theme.Palette.wash
                radius: height / 2
            }
            contentItem: Item {
                Rectangle {
                    color: Theme.Palette.you
                    height: parent.height
                    radius: height / 2
                    width: Math.max(height, bar.visualPosition * parent.width)
                }
            }
        }

        Flickable {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(contentHeight, 180)
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            contentHeight: notes.implicitHeight
            contentWidth: width
            visible: UpdateModel.notes !== ""

            T.ScrollBar.vertical: Theme.ThinScrollBar {
            }

            DetailText {
                id: notes

                horizontalAlignment: Text.AlignLeft
                text: UpdateModel.notes
                width: parent.width
            }
        }

        DetailText {
            color: Theme.Palette.warn
            font: Theme.Typo.caption
            text: UpdateModel.hint
        }

        UpdateButtons {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 4
            focus: true

            onClosed: view.closed()
        }
    }

    Connections {
        function onDismissed() {
            view.closed();
        }

        target: UpdateModel
    }
}
