import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The main window. Whoever makes it shows it, in the place where it was.
Window {
    color: Theme.Palette.paper
    height: 800
    minimumHeight: 640
    minimumWidth: 1000
    objectName: "main"
    title: "Varnic"
    width: 1240

    ContentView {
        anchors.fill: parent
        focus: true
    }
}
