import QtQuick

/// Scrolls a page by the keys that no control has taken: to be asked in the `Keys.onPressed` of what holds it.
QtObject {
    id: keys

    /// May be a list.
    required property Flickable page
    /// What an arrow key moves it by; 0 leaves the arrow keys to others.
    property real step: 48

    readonly property real first: page.originY - page.topMargin
    readonly property real last: Math.max(first, page.originY + page.contentHeight + page.bottomMargin - page.height)

    /// Whether somebody types there, whose own these keys are then.
    function isField(item: Item): bool {
        return (item as TextInput)?.readOnly === false || (item as TextEdit)?.readOnly === false;
    }

    function take(event: var) {
        if (event.modifiers & ~Qt.KeypadModifier || isField(page.Window.activeFocusItem)) {
            return;
        }
        const most = page.height - 48;
        const ways = {
            [Qt.Key_Up]: page.contentY - step,
            [Qt.Key_Down]: page.contentY + step,
            [Qt.Key_PageUp]: page.contentY - most,
            [Qt.Key_PageDown]: page.contentY + most,
            [Qt.Key_Home]: first,
            [Qt.Key_End]: last
        };
        if (event.key in ways && ways[event.key] !== page.contentY) {
            page.contentY = Math.min(Math.max(ways[event.key], first), last);
            event.accepted = true;
        }
    }
}
