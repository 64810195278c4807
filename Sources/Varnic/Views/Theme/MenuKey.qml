pragma Singleton
import QtQuick

/// The key that opens the menu of what the keyboard is on.
QtObject {
    function isPressed(event: var): bool {
        return (event.key === Qt.Key_Menu && event.modifiers === Qt.NoModifier) || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
    }

    /// With Ctrl, the menu of what is around that.
    function isPressedForOuter(event: var): bool {
        return (event.key === Qt.Key_Menu && event.modifiers === Qt.ControlModifier) || (event.key === Qt.Key_F10 && event.modifiers === (Qt.ControlModifier | Qt.ShiftModifier));
    }
}
