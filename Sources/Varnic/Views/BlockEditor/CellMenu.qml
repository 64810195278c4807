import QtQuick
import Varnic.Theme as Theme

/// What can be done with a cell's row and column.
Theme.PaperMenu {
    id: menu

    property int column
    required property int columns
    required property int rows
    property int tableRow

    signal addColumnWanted
    signal addRowWanted
    signal removeColumnWanted(column: int)
    signal removeRowWanted(tableRow: int)

    title: "Cell options"

    function open(cell: Item, column: int, tableRow: int) {
        menu.column = column;
        menu.tableRow = tableRow;
        popup(cell, 8, cell.height - 4);
    }

    Theme.PaperMenuItem {
        text: "Add Row"

        onTriggered: menu.addRowWanted()
    }

    Theme.PaperMenuItem {
        text: "Add Column"

        onTriggered: menu.addColumnWanted()
    }

    Theme.PaperMenuRule {
    }

    Theme.PaperMenuItem {
        enabled: menu.rows > 1
        isDestructive: true
        text: "Delete Row"

        onTriggered: menu.removeRowWanted(menu.tableRow)
    }

    Theme.PaperMenuItem {
        enabled: menu.columns > 1
        isDestructive: true
        text: "Delete Column"

        onTriggered: menu.removeColumnWanted(menu.column)
    }
}
