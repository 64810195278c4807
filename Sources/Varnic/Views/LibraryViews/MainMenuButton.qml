import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// Opens the menus, all in one.
Theme.IconButton {
    id: button

    help: "Main menu"
    size: 30
    symbol: "line.3.horizontal"

    onClicked: menu.popup(0, height + 4)

    PaperMenu {
        id: menu

        width: 280

        Instantiator {
            model: MainMenu

            delegate: MainMenuItem {
            }

            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu.removeItem(object)
        }
    }

    Shortcut {
        sequence: "F10"

        onActivated: button.clicked()
    }
}
