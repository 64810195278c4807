import QtQuick
import Varnic.Theme as Theme

/// A thing that recording takes as a row of the sheet, with a line above it if it is not the first.
Column {
    id: item

    required property string detail
    required property int index
    required property bool isDenied
    required property bool isGranted
    required property string remedy
    required property string title

    signal allowed
    signal opened

    spacing: Theme.Space.m

    Rectangle {
        color: Theme.Palette.rule
        height: 1
        visible: item.index > 0
        width: item.width
    }

    PermissionRow {
        detail: item.detail
        isDenied: item.isDenied
        isGranted: item.isGranted
        remedy: item.remedy
        title: item.title
        width: item.width

        onAllowed: item.allowed()
        onOpened: item.opened()
    }
}
