import QtQuick
import Varnic.LibraryViews
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// The window of all settings. What is changed in it holds at once.
SettingsWindow {
    id: window

    color: Theme.Palette.paper
    height: 720
    minimumHeight: 460
    minimumWidth: 600
    title: "Settings"
    width: 600

    Theme.FocusKeeper {
        window: tabs.Window.window
    }

    FocusScope {
        anchors.fill: parent
        focus: true

        Keys.onEscapePressed: window.close()

        SettingsTabs {
            id: tabs

            current: window.tab
            width: parent.width

            onChosen: tab => window.tab = tab
        }

        SymbolLine {
            id: problem

            anchors.top: tabs.bottom
            color: Theme.Palette.ink
            height: visible ? implicitHeight + Theme.Space.m : 0
            symbol: "exclamationmark.triangle"
            symbolColor: Theme.Palette.warn
            text: GeneralSettings.storeProblem
            topPadding: Theme.Space.m
            visible: text !== ""
            width: parent.width - 2 * Theme.Space.xl
            x: Theme.Space.xl
        }

        Loader {
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: problem.bottom
            // What a pane looks up is only looked up while it shows.
            active: window.visible
            source: ["GeneralPane.qml", "RecordingPane.qml", "SummariesPane.qml", "AboutPane.qml"][window.tab]
        }

        ToastPlace {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.Space.l
            anchors.horizontalCenter: parent.horizontalCenter
        }
    }

    Shortcut {
        sequences: ["Ctrl+PgDown", "Ctrl+Tab"]

        onActivated: tabs.go(window.tab + 1)
    }

    Shortcut {
        sequences: ["Ctrl+PgUp", "Ctrl+Shift+Tab"]

        onActivated: tabs.go(window.tab - 1)
    }

    Shortcut {
        sequence: "Ctrl+W"

        onActivated: window.close()
    }

    Shortcut {
        sequence: "Ctrl+Q"

        onActivated: window.quit()
    }
}
