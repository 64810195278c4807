import QtQuick
import Varnic.Theme as Theme

/// What is known of the note as a text.
Flow {
    required property list<string> items

    spacing: Theme.Space.s
    topPadding: Theme.Space.xxl

    Repeater {
        model: parent.items

        Text {
            required property string modelData

            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            text: modelData
        }
    }
}
