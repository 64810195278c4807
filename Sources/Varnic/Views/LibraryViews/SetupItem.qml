import QtQuick
import QtQuick.Layouts
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// One thing that recording takes.
RowLayout {
    id: item

    required property string detail
    required property int index
    required property bool isReady
    required property string pane
    required property string title

    spacing: Theme.Space.m

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2

        Theme.Label {
            color: Theme.Palette.ink
            font: Theme.Typo.uiStrong
            text: item.title
        }

        Theme.Label {
            Layout.fillWidth: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.caption
            text: item.detail
            wrapMode: Text.Wrap
        }
    }

    Row {
        Accessible.name: item.title + ": Allowed"
        Accessible.role: Accessible.StaticText
        spacing: 4
        visible: item.isReady

        Theme.Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.Palette.ok
            name: "checkmark.circle.fill"
            size: 12
        }

        Text {
            Accessible.ignored: true
            color: Theme.Palette.ok
            font: Theme.Typo.caption
            text: "Allowed"
        }
    }

    Theme.QuietButton {
        Accessible.description: item.title
        compact: true
        text: "Open Settings"
        visible: !item.isReady

        onClicked: Library.openSettings(item.pane)
    }
}
