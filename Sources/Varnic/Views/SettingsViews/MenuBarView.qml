import QtQuick
import QtQuick.Layouts
import Varnic.Ink
import Varnic.LibraryViews
import Varnic.LiveView
import Varnic.SettingsViews
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What the tray icon opens: the recording that runs or a button to start one, and the latest calls.
FocusScope {
    id: view

    readonly property RecentCalls calls: RecentCalls {
    }

    signal closed
    signal opened
    signal quitted

    /// Before it shows.
    function prepare() {
        calls.refresh();
        record.forceActiveFocus(Qt.OtherFocusReason);
    }

    implicitHeight: column.implicitHeight + 2 * Theme.Space.l

    Keys.onEscapePressed: closed()

    Rectangle {
        anchors.fill: parent
        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.paper
    }

    ColumnLayout {
        id: column

        anchors.left: parent.left
        anchors.margins: Theme.Space.l
        anchors.right: parent.right
        anchors.top: parent.top
        spacing: Theme.Space.m

        RowLayout {
            spacing: Theme.Space.s

            Theme.NibMark {
                size: 14
            }

            Text {
                Accessible.name: text
                Accessible.role: Accessible.Heading
                Layout.fillWidth: true
                color: Theme.Palette.you
                font: Theme.Typo.system(14, Font.DemiBold)
                text: "Varnic"
            }

            RecordingDot {
                size: 7
                visible: LiveCall.isBusy
            }

            Text {
                Accessible.name: text
                Accessible.role: Accessible.StaticText
                color: Theme.Palette.ink
                font: Theme.Typo.timer
                text: LiveCall.stamp
                visible: LiveCall.isBusy
            }
        }

        NibLine {
            Layout.fillWidth: true
            Layout.preferredHeight: 18
            history: LiveCall.ink
            visible: LiveCall.isBusy
        }

        RecordButton {
            id: record

            Layout.fillWidth: true
            focus: true
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.Heading
            color: Theme.Palette.inkSoft
            font: Theme.Typo.caption
            text: "Recent calls"
            visible: rows.count > 0
        }

        Repeater {
            id: rows

            model: view.calls

            Theme.PlainButton {
                id: row

                required property string date
                required property int index
                required property string title

                Accessible.description: date
                Layout.bottomMargin: -Theme.Space.s
                Layout.fillWidth: true
                padding: 4
                text: title

                background: Rectangle {
                    color: row.hovered ? Theme.Palette.wash : "transparent"
                    radius: Theme.Radius.control
                }
                contentItem: RowLayout {
                    spacing: Theme.Space.s

                    Text {
                        Accessible.ignored: true
                        Layout.fillWidth: true
                        color: Theme.Palette.ink
                        elide: Text.ElideRight
                        font: Theme.Typo.ui
                        text: row.title
                        textFormat: Text.PlainText
                    }

                    Text {
                        Accessible.ignored: true
                        color: Theme.Palette.inkFaint
                        font: Theme.Typo.caption
                        text: row.date
                    }
                }

                onClicked: {
                    view.closed();
                    view.calls.open(index);
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.topMargin: Theme.Space.s
            color: Theme.Palette.rule
            implicitHeight: 1
        }

        RowLayout {
            Theme.QuietButton {
                compact: true
                text: "Open Varnic"

                onClicked: view.opened()
            }

            Item {
                Layout.fillWidth: true
            }

            Theme.QuietButton {
                compact: true
                text: "Quit"

                onClicked: view.quitted()
            }
        }
    }
}
