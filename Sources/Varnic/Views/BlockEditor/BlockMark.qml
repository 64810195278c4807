import QtQuick
import Varnic.Theme as Theme

// Components use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What stands before a text: the tick of a to-do, the bullet of a list, the bar of a quote.
Loader {
    id: mark

    required property bool isDone
    required property string kind
    required property string words

    signal toggled

    active: kind === "todo" || kind === "bullet" || kind === "quote"
    sourceComponent: kind === "todo" ? tick : kind === "bullet" ? bullet : bar

    Component {
        id: tick

        Item {
            width: button.width

            Theme.PlainButton {
                id: button

                Accessible.description: mark.words
                Accessible.name: mark.isDone ? "Done" : "Not done"
                corner: 4
                focusPolicy: Qt.TabFocus
                implicitHeight: 22
                implicitWidth: 20
                isOn: mark.isDone
                isSwitch: true
                objectName: "tick"

                background: Item {
                }
                contentItem: TickBox {
                    isDone: mark.isDone
                }

                onClicked: mark.toggled()
            }
        }
    }

    Component {
        id: bullet

        Text {
            Accessible.ignored: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.body
            leftPadding: 4
            rightPadding: 4
            text: "•"
        }
    }

    Component {
        id: bar

        Rectangle {
            color: Theme.Palette.inkFaint
            radius: 1
            width: 2
        }
    }
}
