import QtQuick
import QtQuick.Templates as T
import Varnic.BlockEditor
import Varnic.Note
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// A note as one continuous text, between what a page puts above and below it.
EditorSurface {
    id: ground

    /// Pixels of the column in which the text stands, in the middle.
    readonly property real columnWidth: Math.min(Theme.PageWidth.max, width - 2 * Theme.Space.xxl)
    property Component footer
    property alias header: view.header
    required property NoteModel note
    /// What scrolls.
    readonly property alias sheet: view

    /// Opens the options of a block at an item.
    function showOptions(row: int, item: Item) {
        options.active = true;
        (options.item as BlockMenu).open(row, item);
    }

    blocks: theBlocks
    list: view

    ListView {
        id: view

        /// Where the top was before what stands above the blocks took its height.
        property real topBefore: 0

        objectName: "sheet"
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 400
        clip: true
        currentIndex: -1
        focus: true
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }
        delegate: BlockRow {
            columnWidth: ground.columnWidth
            surface: ground
            width: view.width

            onAddColumnWanted: theBlocks.addColumn(index)
            onAddRowWanted: theBlocks.addRow(index)
            onOptionsWanted: item => ground.showOptions(index, item)
            onRemoveColumnWanted: column => theBlocks.removeColumn(index, column)
            onRemoveRowWanted: tableRow => theBlocks.removeRow(index, tableRow)
            onToggled: theBlocks.toggle(index)
        }
        footer: Item {
            implicitHeight: below.implicitHeight
            width: view.width

            Column {
                id: below

                width: ground.columnWidth
                x: (parent.width - width) / 2

                AddBlockBar {
                    blocks: theBlocks
                    topPadding: Theme.Space.s
                    width: parent.width
                }

                Loader {
                    sourceComponent: ground.footer
                    width: parent.width
                }
            }
        }
        model: BlocksModel {
            id: theBlocks

            note: ground.note
        }

        Theme.RowOrder {
            listView: view
        }

        // A list keeps its first row in place while its header grows, and so would leave the top of a page.
        onOriginYChanged: {
            if (Math.abs(contentY - topBefore) < 1) {
                contentY = originY;
            }
            topBefore = originY;
        }
    }

    Rectangle {
        color: Theme.Palette.you
        height: 2
        radius: 1
        visible: ground.dropLine >= 0
        width: ground.columnWidth
        x: (parent.width - width) / 2
        y: ground.dropLine - 1
    }

    Loader {
        id: options

        active: false

        sourceComponent: BlockMenu {
            blocks: theBlocks
        }
    }
}
