import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// Opens the menus, all in one.
Theme.IconButton {
    id: button

    help: "Main menu"
    size: 30
    symbol: "line.3.horizontal"

    onClicked: {
        menu.active = true;
        (menu.item as Theme.PaperMenu).popup(button, 0, height + 4);
    }

    Loader {
        id: menu

        active: false

        sourceComponent: Theme.PaperMenu {
            id: entries

            title: "Main menu"
            width: 280

            Instantiator {
                model: MainMenu

                delegate: MainMenuItem {
                }

                onObjectAdded: (index, object) => entries.insertItem(index, object)
                onObjectRemoved: (index, object) => entries.removeItem(object)
            }
        }
    }

    Shortcut {
        sequence: "F10"

        onActivated: button.clicked()
    }
}
