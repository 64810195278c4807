import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A view of its own on paper.
Window {
    /// The view's file.
    property alias source: view.source

    color: Theme.Palette.paper

    Loader {
        id: view

        anchors.fill: parent

        // A sheet would dim the paper around it.
        onLoaded: {
            const sheet = item as T.Popup;
            if (sheet) {
                sheet.modal = false;
            }
        }
    }
}
