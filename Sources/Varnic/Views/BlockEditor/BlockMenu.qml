import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What can be done with a block.
Theme.PaperMenu {
    id: menu

    required property BlocksModel blocks
    property int row: -1

    title: "Block options"

    function open(row: int, item: Item) {
        menu.row = row;
        popup(item, 0, Math.min(item.height, 22) + 2);
    }

    Theme.PaperMenu {
        id: kinds

        title: "Turn Into"

        Instantiator {
            model: menu.blocks.kindTitles

            Theme.PaperMenuItem {
                required property int index
                required property string modelData

                symbol: menu.blocks.kindSymbols[index]
                text: modelData

                onTriggered: menu.blocks.turnInto(menu.row, index)
            }

            onObjectAdded: (index, object) => kinds.insertItem(index, object)
            onObjectRemoved: (index, object) => kinds.removeItem(object)
        }
    }

    Theme.PaperMenuItem {
        keys: "Alt+Up"
        text: "Move Up"

        onTriggered: menu.blocks.moveBy(menu.row, -1)
    }

    Theme.PaperMenuItem {
        keys: "Alt+Down"
        text: "Move Down"

        onTriggered: menu.blocks.moveBy(menu.row, 1)
    }

    Theme.PaperMenuRule {
    }

    Theme.PaperMenuItem {
        isDestructive: true
        text: "Delete Block"

        onTriggered: menu.blocks.remove(menu.row)
    }
}
