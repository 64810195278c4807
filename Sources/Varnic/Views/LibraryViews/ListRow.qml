import QtQuick

/// A row of a list in the second column, as the list's keys and assistive programs find it.
Item {
    id: row

    readonly property bool isCurrent: ListView.isCurrentItem
    readonly property bool isFocused: ListView.view ? ListView.view.activeFocus : false
    /// A list also keeps some rows that are scrolled away.
    readonly property bool isInView: !ListView.view || (y + height > ListView.view.contentY && y < ListView.view.contentY + ListView.view.height)

    Accessible.focusable: true
    Accessible.focused: isCurrent && isFocused
    Accessible.ignored: !isInView
    Accessible.role: Accessible.ListItem
}
