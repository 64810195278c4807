import QtQuick
import Varnic.NotePage
import Varnic.Theme as Theme

/// Plays the call or pauses it. Its keys are those that no desktop takes for itself.
Theme.PlainButton {
    id: button

    required property CallPlayer player

    Accessible.name: player.playing ? "Pause" : "Play"
    corner: 15
    enabled: player.available
    help: player.available ? "Play the call (Alt+P)" : "The audio for this call was removed"
    implicitHeight: 30
    implicitWidth: 30

    background: Item {
        Rectangle {
            anchors.centerIn: parent
            color: button.player.available ? Theme.Palette.ink : Theme.Palette.inkFaint
            height: 26
            opacity: button.down ? 0.85 : 1
            radius: 13
            width: 26
        }
    }
    contentItem: Item {
        Theme.Symbol {
            anchors.centerIn: parent
            // On the dark theme's light ink, white would not be seen.
            color: Theme.Palette.dark ? Theme.Palette.paper : "white"
            name: button.player.playing ? "pause.fill" : "play.fill"
            size: 11
            weight: Font.Bold
        }
    }

    onClicked: player.toggle()

    Shortcut {
        enabled: button.player.available
        sequence: "Alt+P"

        onActivated: button.player.toggle()
    }

    Shortcut {
        enabled: button.player.available
        sequence: "Alt+Left"

        onActivated: button.player.skip(-10)
    }

    Shortcut {
        enabled: button.player.available
        sequence: "Alt+Right"

        onActivated: button.player.skip(10)
    }
}
