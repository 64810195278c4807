import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// One of a few choices, which stand below each other in full. Whoever shows it binds `selected` and changes what that
/// stands for when another is `chosen`.
Column {
    id: control

    required property list<string> choices
    /// What is chosen, for assistive programs.
    required property string name
    required property int selected

    signal chosen(int index)

    Accessible.name: name
    Accessible.role: Accessible.Grouping
    spacing: 4

    Repeater {
        model: control.choices

        T.RadioButton {
            id: button

            required property int index
            required property string modelData

            Accessible.name: text
            checked: control.selected === index
            focusPolicy: Qt.StrongFocus
            implicitHeight: Math.max(24, implicitContentHeight)
            leftPadding: 24
            text: modelData
            width: control.width

            contentItem: Text {
                Accessible.ignored: true
                color: Theme.Palette.ink
                font: Theme.Typo.ui
                text: button.text
                verticalAlignment: Text.AlignVCenter
                wrapMode: Text.Wrap
            }
            indicator: Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                border.color: button.checked ? Theme.Palette.you : Theme.Palette.inkFaint
                border.width: button.checked ? 5 : 1
                color: Theme.Palette.surface
                height: 16
                radius: 8
                width: 16

                FocusRing {
                    corner: 8
                    visible: button.visualFocus
                }
            }

            // Assistive programs check it without a click.
            onCheckedChanged: {
                if (checked && index !== control.selected) {
                    control.chosen(index);
                }
            }
        }
    }
}
