import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// One of a few choices, which stand side by side.
Row {
    id: control

    required property list<string> choices
    /// The choice that shows; whoever shows the control changes it when another is chosen.
    required property int currentIndex
    /// What is chosen, for assistive programs.
    required property string name
    /// The width of each choice.
    property real segmentWidth: 70

    signal chosen(int index)

    Accessible.name: name
    Accessible.role: Accessible.Grouping
    spacing: 2

    Repeater {
        model: control.choices

        T.RadioButton {
            id: segment

            required property int index
            required property string modelData

            Accessible.name: text
            checked: control.currentIndex === index
            implicitHeight: 24
            implicitWidth: control.segmentWidth
            text: modelData

            background: Rectangle {
                border.color: Theme.Palette.you
                border.width: segment.visualFocus ? 2 : 0
                color: segment.checked ? Theme.Palette.washHover : segment.hovered ? Theme.Palette.wash : "transparent"
                radius: 6
            }
            contentItem: Text {
                color: segment.checked ? Theme.Palette.ink : Theme.Palette.inkSoft
                font: Theme.Typo.captionStrong
                horizontalAlignment: Text.AlignHCenter
                text: segment.text
                verticalAlignment: Text.AlignVCenter
            }

            // Assistive programs check it without a click.
            onCheckedChanged: {
                if (checked && index !== control.currentIndex) {
                    control.chosen(index);
                }
            }
        }
    }
}
