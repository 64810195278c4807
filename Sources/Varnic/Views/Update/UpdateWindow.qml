import QtQuick
import Varnic.Theme as Theme
import Varnic.Update

/// Where the updater tells what goes on. Whoever makes it shows it.
Window {
    id: window

    color: Theme.Palette.paper
    height: view.implicitHeight
    maximumHeight: height
    maximumWidth: width
    minimumHeight: height
    minimumWidth: width
    title: "Software Update"
    width: 420

    UpdateView {
        id: view

        anchors.fill: parent

        onClosed: window.close()
    }

    Shortcut {
        sequences: ["Esc", "Ctrl+W"]

        onActivated: window.close()
    }
}
