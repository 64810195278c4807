import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What can be done with a block.
Theme.PaperMenu {
    // Not `menu`, which to an entry is the menu that it is in.
    id: options

    required property BlocksModel blocks
    property int row: -1

    title: "Block options"

    function open(row: int, item: Item) {
        options.row = row;
        popup(item, 0, Math.min(item.height, 22) + 2);
    }

    // Its row may be another block's then.
    Connections {
        function onRowsInserted() {
            options.close();
        }
        function onRowsMoved() {
            options.close();
        }
        function onRowsRemoved() {
            options.close();
        }

        target: options.blocks // qmllint disable type
    }

    Theme.PaperMenu {
        id: kinds

        title: "Turn Into"

        Instantiator {
            model: options.blocks.kindTitles

            Theme.PaperMenuItem {
                required property int index
                required property string modelData

                symbol: options.blocks.kindSymbols[index]
                text: modelData

                onTriggered: options.blocks.turnInto(options.row, index)
            }

            onObjectAdded: (index, object) => kinds.insertItem(index, object)
            onObjectRemoved: (index, object) => kinds.removeItem(object)
        }
    }

    Theme.PaperMenuItem {
        keys: "Alt+Up"
        text: "Move Up"

        onTriggered: options.blocks.moveBy(options.row, -1)
    }

    Theme.PaperMenuItem {
        keys: "Alt+Down"
        text: "Move Down"

        onTriggered: options.blocks.moveBy(options.row, 1)
    }

    Theme.PaperMenuRule {
    }

    Theme.PaperMenuItem {
        isDestructive: true
        text: "Delete Block"

        onTriggered: options.blocks.remove(options.row)
    }
}
