import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A menu on paper.
T.Menu {
    id: menu

    cascade: true
    delegate: PaperMenuItem {
    }
    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: implicitBackgroundWidth
    margins: 6
    overlap: 2
    padding: 5

    background: Rectangle {
        border.color: Theme.Palette.rule
        border.width: 1
        color: Theme.Palette.surface
        implicitWidth: 240
        radius: Theme.Radius.control

        Theme.Shadow {
            height: parent.height + 2 * blur
            radius: Theme.Radius.control
            width: parent.width + 2 * blur
            x: -blur
            y: 3 - blur
            z: -1
        }
    }
    contentItem: ListView {
        clip: true
        currentIndex: menu.currentIndex
        implicitHeight: contentHeight
        interactive: contentHeight > height
        model: menu.contentModel
    }

    // The popup around the entries is what assistive programs are told of.
    onAboutToShow: contentItem.parent.Accessible.name = title
}
