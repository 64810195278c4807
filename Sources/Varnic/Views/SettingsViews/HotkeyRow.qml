import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// The combination that starts and stops a recording, chosen from a list or by pressing it.
ControlRow {
    id: row

    detail: HotkeySettings.problem !== "" ? HotkeySettings.problem : HotkeySettings.note
    name: SettingsWindow.Hotkey
    text: "Shortcut"

    Theme.PaperPicker {
        choices: HotkeySettings.choices
        enabled: HotkeySettings.isEnabled
        name: "Shortcut"
        selected: HotkeySettings.selected
        visible: !HotkeySettings.isRecording
        width: 180

        onChosen: index => HotkeySettings.selected = index
    }

    Rectangle {
        id: recorder

        /// It is hidden from the beginning, which is no end of its use.
        property bool wasShown: false

        Accessible.name: "Press the new shortcut"
        Accessible.role: Accessible.HotkeyField
        border.color: Theme.Palette.you
        border.width: 2
        color: Theme.Palette.surface
        height: 30
        radius: Theme.Radius.control
        visible: HotkeySettings.isRecording
        width: 180

        Keys.onPressed: event => {
            event.accepted = true;
            if (event.key === Qt.Key_Escape) {
                HotkeySettings.isRecording = false;
            } else {
                HotkeySettings.press(event.key, event.modifiers);
            }
        }
        // The window's own shortcuts can be pressed too.
        Keys.onShortcutOverride: event => event.accepted = true
        onActiveFocusChanged: {
            if (!activeFocus) {
                HotkeySettings.isRecording = false;
            }
        }
        onVisibleChanged: {
            if (visible) {
                forceActiveFocus(Qt.OtherFocusReason);
            } else if (wasShown) {
                start.forceActiveFocus(Qt.TabFocusReason);
            }
            wasShown = visible;
        }

        Text {
            anchors.centerIn: parent
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            text: "Press the keys…"
        }
    }

    Theme.QuietButton {
        id: start

        height: 30
        enabled: HotkeySettings.isEnabled
        help: HotkeySettings.isRecording ? "Keep the shortcut as it is" : "Choose a shortcut by pressing it"
        text: HotkeySettings.isRecording ? "Cancel" : "Record…"

        onClicked: HotkeySettings.isRecording = !HotkeySettings.isRecording
    }

    Theme.QuietButton {
        height: 30
        help: HotkeySettings.command
        text: "Copy Command"
        visible: HotkeySettings.command !== ""

        onClicked: HotkeySettings.copyCommand()
    }
}
