import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The banner about note files that cannot be read, or a library that can't; without any it takes no place.
Item {
    id: banner

    Accessible.name: Library.loadProblem
    Accessible.role: Accessible.AlertMessage
    implicitHeight: visible ? Math.max(text.implicitHeight, actions.implicitHeight) + 2 * Theme.Space.s : 0
    visible: Library.loadProblem !== ""

    Theme.Symbol {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: Theme.Space.m
        anchors.top: text.top
        color: Theme.Palette.warn
        name: "exclamationmark.triangle"
        size: 12
        weight: Font.Medium
    }

    Text {
        id: text

        Accessible.ignored: true
        anchors.left: icon.right
        anchors.leftMargin: Theme.Space.s
        anchors.right: actions.left
        anchors.rightMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.ink
        font: Theme.Typo.caption
        text: Library.loadProblem
        wrapMode: Text.Wrap
    }

    Row {
        id: actions

        anchors.right: parent.right
        anchors.rightMargin: Theme.Space.s
        anchors.verticalCenter: parent.verticalCenter

        Theme.QuietButton {
            objectName: "tryAgain"
            text: "Try Again"
            visible: Library.isUnreadable

            onClicked: Library.load()
        }

        Theme.IconButton {
            help: "Dismiss"
            size: 24
            symbol: "xmark"
            visible: !Library.isUnreadable

            onClicked: Library.dismissLoadProblem()
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.Palette.rule
        height: 1
        width: parent.width
    }
}
