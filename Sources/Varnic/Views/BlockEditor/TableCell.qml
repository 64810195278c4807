import QtQuick
import Varnic.BlockEditor
import Varnic.Theme as Theme

/// A cell of a table.
Item {
    id: cell

    required property string blockId
    required property int column
    required property int index
    readonly property alias isCovered: line.isCovered
    required property EditorSurface surface
    required property int tableRow
    required property string words

    /// The keyboard came to it.
    signal entered
    signal optionsWanted

    implicitHeight: line.implicitHeight + 12

    Rectangle {
        color: Theme.Palette.rule
        height: 1
        visible: cell.tableRow > 0
        width: parent.width
    }

    Rectangle {
        anchors.left: parent.left
        color: Theme.Palette.rule
        height: parent.height
        visible: cell.column > 0
        width: 1
    }

    TextLine {
        id: line

        Accessible.name: "Row " + (cell.tableRow + 1) + ", column " + (cell.column + 1)
        blockId: cell.blockId
        font: cell.tableRow === 0 ? Theme.Typo.uiStrong : Theme.Typo.ui
        part: cell.index
        placeholder: cell.tableRow === 0 ? "Column" : ""
        stored: cell.words
        surface: cell.surface
        width: parent.width - 16
        x: 8
        y: 6

        Keys.onPressed: event => {
            if (Theme.MenuKey.isPressed(event)) {
                cell.optionsWanted();
                event.accepted = true;
            }
        }
        onActiveFocusChanged: {
            if (activeFocus) {
                cell.entered();
            }
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: cell.optionsWanted()
    }
}
