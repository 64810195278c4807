import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// The tabs of the settings, in a bar on top.
Rectangle {
    id: bar

    required property int current

    signal chosen(int tab)

    /// By the keyboard, around the end.
    function go(tab: int) {
        const next = (tab + tabs.count) % tabs.count;
        chosen(next);
        tabs.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
    }

    color: Theme.Palette.sidebar
    implicitHeight: 72

    Row {
        Accessible.name: "Settings"
        Accessible.role: Accessible.PageTabList
        anchors.centerIn: parent
        spacing: Theme.Space.s

        Repeater {
            id: tabs

            model: ["General", "Recording", "Summaries", "About"]

            T.TabButton {
                id: tab

                readonly property color ink: isCurrent ? Theme.Palette.you : Theme.Palette.inkSoft
                required property int index
                readonly property bool isCurrent: bar.current === index
                required property string modelData

                Accessible.name: text
                Accessible.onPressAction: bar.chosen(index)
                Accessible.selectable: true
                Accessible.selected: isCurrent
                checked: isCurrent
                focus: isCurrent
                // One stop of the Tab key, from which the arrows go on.
                focusPolicy: isCurrent ? Qt.StrongFocus : Qt.ClickFocus
                implicitHeight: 58
                implicitWidth: 92
                text: modelData

                background: Rectangle {
                    color: tab.isCurrent ? Theme.Palette.youWash : tab.hovered ? Theme.Palette.wash : "transparent"
                    radius: Theme.Radius.control

                    Theme.FocusRing {
                        anchors.margins: 0
                        corner: Theme.Radius.control - 3
                        visible: tab.visualFocus
                    }
                }
                contentItem: Item {
                    Theme.Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        anchors.top: parent.top
                        anchors.topMargin: 8
                        color: tab.ink
                        name: ["gearshape", "record.circle", "sparkles", "info.circle"][tab.index]
                        size: 18
                    }

                    Text {
                        Accessible.ignored: true
                        anchors.bottom: parent.bottom
                        anchors.bottomMargin: 7
                        anchors.horizontalCenter: parent.horizontalCenter
                        color: tab.ink
                        font: Theme.Typo.captionStrong
                        text: tab.text
                    }
                }

                Keys.onLeftPressed: bar.go(index - 1)
                Keys.onRightPressed: bar.go(index + 1)
                // Assistive programs check it without a click.
                onCheckedChanged: {
                    if (checked && !isCurrent) {
                        bar.chosen(index);
                    }
                }
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }
}
