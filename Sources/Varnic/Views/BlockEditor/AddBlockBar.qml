import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// Adds a block of a kind at the end of the note.
Flow {
    id: bar

    required property BlocksModel blocks
    /// Pixels that the buttons take with their titles.
    readonly property real fullWidth: 610

    spacing: Theme.Space.s

    Repeater {
        model: bar.blocks.addable

        Theme.QuietButton {
            required property int modelData
            readonly property string title: bar.blocks.kindTitles[modelData]

            Accessible.name: help
            compact: true
            help: "Add " + title.toLowerCase()
            symbol: bar.blocks.kindSymbols[modelData]
            text: bar.width >= bar.fullWidth ? title : ""

            onClicked: bar.blocks.add(modelData)
        }
    }
}
