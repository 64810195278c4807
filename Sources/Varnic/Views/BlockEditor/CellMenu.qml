import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

/// What can be done with a cell's row and column.
Theme.PaperMenu {
    // Not `menu`, which to an entry is the menu that it is in.
    id: options

    required property TableCells cells
    property int column
    required property int columns
    required property int rows
    property int tableRow

    title: "Cell options"

    signal addColumnWanted
    signal addRowWanted
    signal blockOptionsWanted
    signal removeColumnWanted(int column)
    signal removeRowWanted(int tableRow)

    function open(cell: Item, column: int, tableRow: int) {
        options.column = column;
        options.tableRow = tableRow;
        popup(cell, 8, cell.height - 4);
    }

    // Another row or column may be in that place then.
    Connections {
        function onRowsInserted() {
            options.close();
        }
        function onRowsRemoved() {
            options.close();
        }

        target: options.cells
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

    Theme.PaperMenuRule {
    }

    Theme.PaperMenuItem {
        keys: "Ctrl+Shift+F10"
        text: "Block Options…"

        // Once this menu has given the keyboard back.
        onTriggered: Qt.callLater(options.blockOptionsWanted) // qmllint disable type
    }
}
