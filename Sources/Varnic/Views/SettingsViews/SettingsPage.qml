import QtQuick
import QtQuick.Templates as T
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// The sections of a tab, which scroll. What the keyboard is on is in view.
Flickable {
    id: page

    default property alias sections: column.data

    /// Scrolls as little as shows the item.
    function reveal(item: Item) {
        const top = item.mapToItem(contentItem, 0, 0).y - Theme.Space.l;
        const bottom = top + item.height + 2 * Theme.Space.l;
        contentY = Math.max(0, Math.min(contentHeight - height, Math.max(Math.min(contentY, top), bottom - height)));
    }

    /// Scrolls by part of the page's height, also where the keyboard has nothing to stop at.
    function scroll(part: real) {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + part * height));
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: column.height + 2 * Theme.Space.xl

    // What rows have to tell may be known only after the window has opened at a row below.
    onContentHeightChanged: {
        if ((Window.window as SettingsWindow)?.row !== SettingsWindow.None) {
            Qt.callLater(page.revealFocus);
        }
    }

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp;
        if (event.accepted) {
            scroll(event.key === Qt.Key_PageDown ? 0.9 : -0.9);
        }
    }

    T.ScrollBar.vertical: Theme.ThinScrollBar {
    }

    /// Scrolls as little as shows what the keyboard is on.
    function revealFocus() {
        const item = page.Window.activeFocusItem;
        for (let above = item; above; above = above.parent) {
            if (above === column) {
                page.reveal(item);
            }
        }
    }

    Connections {
        function onActiveFocusItemChanged() {
            page.revealFocus();
        }

        target: page.Window.window
    }

    Column {
        id: column

        spacing: Theme.Space.xl
        width: page.width - 2 * Theme.Space.xl
        x: Theme.Space.xl
        y: Theme.Space.xl
    }
}
