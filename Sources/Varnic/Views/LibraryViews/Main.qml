import QtQuick

/// The main window.
Window {
    height: 800
    minimumHeight: 640
    minimumWidth: 1000
    title: "Varnic"
    visible: true
    width: 1240

    ContentView {
        anchors.fill: parent
    }
}
