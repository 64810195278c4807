import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// Adds a block of a kind at the end of the note.
Flow {
    id: bar

    required property BlocksModel blocks
    /// Whether the buttons' titles have room, all in one line.
    readonly property bool labelled: labelledWidth <= width
    readonly property real labelledWidth: {
        let all = (buttons.count - 1) * spacing;
        for (let i = 0; i < buttons.count; ++i) {
            all += (buttons.itemAt(i) as Theme.QuietButton)?.labelledWidth ?? 0;
        }
        return all;
    }

    objectName: "addBlockBar"
    spacing: Theme.Space.s

    Repeater {
        id: buttons

        model: bar.blocks.addable

        Theme.QuietButton {
            required property int modelData

            Accessible.name: help
            compact: true
            help: "Add " + text.toLowerCase()
            labelled: bar.labelled
            symbol: bar.blocks.kindSymbols[modelData]
            text: bar.blocks.kindTitles[modelData]

            onClicked: bar.blocks.add(modelData)
        }
    }
}
