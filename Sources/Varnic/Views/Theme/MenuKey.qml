pragma Singleton
import QtQuick

/// The key that opens the menu of what the keyboard is on.
QtObject {
    function isPressed(event: var): bool {
        return event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
    }
}
