import QtQuick
import Varnic.Theme as Theme

/// What can be done with a cell's row and column.
Theme.PaperMenu {
    // Not `menu`, which to an entry is the menu that it is in.
    id: options

    property int column
    required property int columns
    required property int rows
    property int tableRow

    title: "Cell options"

    signal addColumnWanted
    signal addRowWanted
    signal removeColumnWanted(int column)
    signal removeRowWanted(int tableRow)

    function open(cell: Item, column: int, tableRow: int) {
        options.column = column;
        options.tableRow = tableRow;
        popup(cell, 8, cell.height - 4);
    }

    Theme.PaperMenuItem {
        text: "Add Row"

        onTriggered: options.addRowWanted()
    }

    Theme.PaperMenuItem {
        text: "Add Column"

        onTriggered: options.addColumnWanted()
    }

    Theme.PaperMenuRule {
    }

    Theme.PaperMenuItem {
        enabled: options.rows > 1
        isDestructive: true
        text: "Delete Row"

        onTriggered: options.removeRowWanted(options.tableRow)
    }

    Theme.PaperMenuItem {
        enabled: options.columns > 1
        isDestructive: true
        text: "Delete Column"

        onTriggered: options.removeColumnWanted(options.column)
    }
}
