import QtQuick
import Varnic.Note
import Varnic.Theme as Theme

/// A plain text field of several lines for one stored text.
FocusScope {
    id: field

    property real bottomPadding: 0
    property color color: Theme.Palette.ink
    property font font: Theme.Typo.body
    /// Whether typing is undone here, rather than by whom `undoWanted` and `redoWanted` tell.
    property bool hasHistory: true
    /// Return breaks the line.
    property bool lineBreaks: false
    property string placeholder
    /// The stored text.
    property string text

    signal edited(string text)
    signal redoWanted
    /// Return was pressed where it breaks no line.
    signal returned
    signal undoWanted

    /// Leaves it for the next control.
    function goOn() {
        edit.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }

    Accessible.multiLine: true
    Accessible.role: Accessible.EditableText
    implicitHeight: edit.implicitHeight + bottomPadding
    implicitWidth: edit.implicitWidth

    TextSync {
        editor: edit
        lineBreaks: field.lineBreaks
        value: field.text

        onEdited: text => field.edited(text)
    }

    TextEdit {
        id: edit

        Accessible.ignored: true
        activeFocusOnTab: true
        color: field.color
        focus: true
        font: field.font
        selectByMouse: true
        selectedTextColor: Theme.Palette.ink
        selectionColor: Theme.Palette.selection
        textFormat: TextEdit.PlainText
        width: field.width
        wrapMode: TextEdit.Wrap

        KeyNavigation.priority: KeyNavigation.BeforeItem
        Keys.onPressed: event => {
            if (!field.lineBreaks && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)) {
                event.accepted = true;
                field.returned();
            } else if (!field.hasHistory && event.matches(StandardKey.Undo)) {
                event.accepted = true;
                field.undoWanted();
            } else if (!field.hasHistory && event.matches(StandardKey.Redo)) {
                event.accepted = true;
                field.redoWanted();
            }
        }
        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        Keys.onTabPressed: field.goOn()

        Text {
            color: Theme.Palette.inkFaint
            font: field.font
            text: field.placeholder
            visible: edit.length === 0 && edit.preeditText === ""
        }
    }
}
