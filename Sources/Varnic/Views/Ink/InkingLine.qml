import QtQuick
import Varnic.Ink
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// What somebody says, written word by word as it comes. The text can be selected.
Item {
    id: line

    required property color color
    required property font font
    /// How many characters are final.
    required property int firm
    /// The words that are being written now.
    required property FreshInk fresh
    required property string text

    /// The place of a character; `layout` is what it depends on.
    function placeOf(character: int, layout: vector3d): rect {
        return written.positionToRectangle(Math.min(character, written.length));
    }

    baselineOffset: written.baselineOffset
    implicitHeight: written.implicitHeight

    TextEdit {
        id: written

        Accessible.ignored: true
        activeFocusOnPress: true
        color: line.color
        font: line.font
        readOnly: true
        selectByMouse: true
        selectionColor: Theme.Palette.highlight
        selectedTextColor: line.color
        text: line.text
        textFormat: TextEdit.PlainText
        width: line.width
        wrapMode: TextEdit.Wrap
    }

    WetInk {
        color: Qt.alpha(line.color, 0.86)
        firm: line.firm
        text: written.textDocument
    }

    Repeater {
        model: line.fresh

        InkIn {
            required property int from
            required property int to
            readonly property vector3d layout: Qt.vector3d(written.width, written.contentHeight, written.length)
            readonly property rect begin: line.placeOf(from, layout)
            readonly property rect end: line.placeOf(to, layout)

            height: begin.height
            // A letter may lean out of its place a little.
            width: Math.max(end.x - begin.x, 0) + 3
            x: begin.x - 1
            y: begin.y
        }
    }
}
