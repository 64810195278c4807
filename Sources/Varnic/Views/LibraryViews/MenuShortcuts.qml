pragma ComponentBehavior
import QtQuick
import QtQml
import Varnic.LibraryViews

/// The keys of all menus.
Item {
    id: keys

    Instantiator {
        model: MainMenu

        delegate: Shortcut {
            required property int index
            required property bool isEnabled
            required property string shortcut

            enabled: keys.enabled && isEnabled && shortcut !== ""
            sequence: shortcut

            onActivated: MainMenu.perform(index)
        }
    }
}
