import QtQuick
import QtQuick.Layouts
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// A table; its first row is its header.
Rectangle {
    id: block

    /// Row by row.
    required property list<string> cells
    required property int columns

    border.color: Theme.Palette.rule
    border.width: 1
    color: Theme.Palette.surface
    implicitHeight: grid.implicitHeight
    radius: Theme.Radius.card

    Rectangle {
        color: Theme.Palette.wash
        height: Math.min(parent.height - 2, grid.headHeight - 1)
        opacity: 0.7
        radius: Theme.Radius.card - 1
        width: parent.width - 2
        x: 1
        y: 1
    }

    GridLayout {
        id: grid

        readonly property real headHeight: cellItems.count > 0 ? cellItems.itemAt(0).height : 0

        columnSpacing: 0
        columns: Math.max(1, block.columns)
        rowSpacing: 0
        width: parent.width

        Repeater {
            id: cellItems

            model: block.cells

            Item {
                id: cell

                readonly property int column: index % grid.columns
                required property int index
                required property string modelData
                readonly property int row: index / grid.columns

                Layout.fillHeight: true
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                implicitHeight: words.implicitHeight + 12

                Rectangle {
                    color: Theme.Palette.rule
                    height: 1
                    visible: cell.row > 0
                    width: parent.width
                }

                Rectangle {
                    color: Theme.Palette.rule
                    height: parent.height
                    visible: cell.column > 0
                    width: 1
                }

                ReadText {
                    id: words

                    Accessible.description: "Row " + (cell.row + 1) + ", column " + (cell.column + 1)
                    font: cell.row === 0 ? Theme.Typo.uiStrong : Theme.Typo.ui
                    text: cell.modelData
                    width: parent.width - 16
                    x: 8
                    y: 6
                }
            }
        }
    }
}
