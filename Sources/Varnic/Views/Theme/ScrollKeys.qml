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

    /// To the beginning or the end. Of a list they are known for sure only once the rows there have been made.
    function jump(toEnd: bool) {
        const list = page as ListView;
        if (toEnd) {
            list?.positionViewAtEnd();
        } else {
            list?.positionViewAtBeginning();
        }
        page.contentY = toEnd ? last : first;
    }

    function take(event: var) {
        if (event.modifiers & ~Qt.KeypadModifier || isField(page.Window.activeFocusItem)) {
            return;
        }
        const most = page.height - 48;
        const ways = {
            [Qt.Key_Up]: -step,
            [Qt.Key_Down]: step,
            [Qt.Key_PageUp]: -most,
            [Qt.Key_PageDown]: most
        };
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            jump(event.key === Qt.Key_End);
            event.accepted = true;
        } else if (ways[event.key]) {
            page.contentY = Math.min(Math.max(page.contentY + ways[event.key], first), last);
            event.accepted = true;
        }
    }
}
