import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// A row of a section, with a line above it if it is not the first. It is marked, in view and has the keyboard when the
/// window was opened for it.
Item {
    id: row

    default property alias content: place.data
    property bool hasLine: y > 1
    /// How the window is told to open at it.
    property int name: SettingsWindow.None
    readonly property bool isAskedFor: name !== SettingsWindow.None && (Window.window as SettingsWindow)?.row === name

    implicitHeight: place.y + place.implicitHeight + 10
    width: parent?.width ?? 0

    /// Once all rows are in their places.
    Timer {
        interval: 0
        running: row.isAskedFor

        onTriggered: row.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: 3
        border.color: Theme.Palette.you
        border.width: 1
        color: Theme.Palette.youWash
        radius: 9
        visible: row.isAskedFor
    }

    Rectangle {
        color: Theme.Palette.rule
        height: 1
        visible: row.hasLine
        width: row.width - 2 * Theme.Space.l
        x: Theme.Space.l
    }

    Column {
        id: place

        spacing: Theme.Space.s
        width: row.width - 2 * Theme.Space.l
        x: Theme.Space.l
        // What belongs to the row above is close to it.
        y: row.hasLine || row.y <= 1 ? 10 : 0
    }
}
