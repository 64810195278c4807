import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnic.BlockEditor
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// A table; its first row is its header.
Item {
    id: block

    required property string blockId
    required property tableWords cells
    /// Pixels: room for a word.
    readonly property real leastColumn: 72
    required property EditorSurface surface

    signal addColumnWanted
    signal addRowWanted
    /// Of the table as a block.
    signal optionsWanted
    signal removeColumnWanted(int column)
    signal removeRowWanted(int tableRow)

    /// Opens the options of a cell.
    function showOptions(cell: Item, column: int, tableRow: int) {
        options.active = true;
        (options.item as CellMenu).open(cell, column, tableRow);
    }

    implicitHeight: buttons.y + buttons.height + 6

    Rectangle {
        id: frame

        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.surface
        implicitHeight: grid.implicitHeight
        radius: Theme.Radius.card
        width: parent.width
        y: 6

        Item {
            clip: true
            height: Math.min(parent.height - 2, grid.headHeight - 1)
            width: parent.width - 2
            x: 1
            y: 1

            // Round above, and below only where the table ends with it.
            Rectangle {
                color: Theme.Palette.wash
                height: block.cells.rows > 1 ? parent.height + radius : parent.height
                opacity: 0.7
                radius: Theme.Radius.card - 1
                width: parent.width
            }
        }

        Rectangle {
            anchors.fill: parent
            color: Theme.Palette.youWash
            radius: parent.radius
            visible: (cellItems.count > 0 && (cellItems.itemAt(0) as TableCell)?.isCovered) ?? false
        }

        // For tables of many columns.
        Flickable {
            id: sideways

            /// Scrolls as little as shows the whole cell.
            function reveal(cell: Item) {
                contentX = Math.max(Math.min(contentX, cell.x), cell.x + cell.width - width);
            }

            T.ScrollBar.horizontal: Theme.ThinScrollBar {
            }
            anchors.fill: parent
            boundsBehavior: Flickable.StopAtBounds
            clip: contentWidth > width
            contentWidth: grid.width
            contentX: LayoutMirroring.enabled ? contentWidth - width : 0
            flickableDirection: Flickable.HorizontalFlick
            interactive: contentWidth > width
            objectName: "sideways"

            GridLayout {
                id: grid

                readonly property real headHeight: cellItems.count > 0 ? cellItems.itemAt(0).height : 0

                columnSpacing: 0
                columns: Math.max(1, theCells.columns)
                rowSpacing: 0
                width: Math.max(sideways.width, columns * block.leastColumn)

                Repeater {
                    id: cellItems

                    model: TableCells {
                        id: theCells

                        table: block.cells
                    }

                    TableCell {
                        Layout.fillHeight: true
                        Layout.fillWidth: true
                        Layout.preferredWidth: 1
                        blockId: block.blockId
                        column: index % grid.columns
                        surface: block.surface
                        tableRow: index / grid.columns

                        onEntered: sideways.reveal(this)
                        onOptionsWanted: block.showOptions(this, column, tableRow)
                    }
                }
            }
        }
    }

    Row {
        id: buttons

        anchors.left: parent.left
        anchors.top: frame.bottom
        anchors.topMargin: Theme.Space.s
        spacing: Theme.Space.s

        Theme.QuietButton {
            compact: true
            help: "Add Row"
            symbol: "plus"
            text: "Row"

            onClicked: block.addRowWanted()
        }

        Theme.QuietButton {
            compact: true
            help: "Add Column"
            symbol: "plus"
            text: "Column"

            onClicked: block.addColumnWanted()
        }
    }

    Loader {
        id: options

        active: false

        sourceComponent: CellMenu {
            cells: theCells
            columns: block.cells.columns
            rows: block.cells.rows

            onAddColumnWanted: block.addColumnWanted()
            onAddRowWanted: block.addRowWanted()
            onBlockOptionsWanted: block.optionsWanted()
            onRemoveColumnWanted: column => block.removeColumnWanted(column)
            onRemoveRowWanted: tableRow => block.removeRowWanted(tableRow)
        }
    }
}
