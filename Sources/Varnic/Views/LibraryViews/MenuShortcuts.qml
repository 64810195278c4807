import QtQuick
import QtQml
import Varnic.LibraryViews

/// The keys of all menus. They rest while a sheet waits for an answer.
Instantiator {
    model: MainMenu

    delegate: Shortcut {
        required property int index
        required property bool isEnabled
        required property string shortcut

        enabled: !Library.isAsking && isEnabled && shortcut !== ""
        sequence: shortcut

        onActivated: MainMenu.perform(index)
    }
}
