import QtQuick
import Varnic.NotePage
import Varnic.Theme as Theme

/// Sidebar, list and detail.
Rectangle {
    color: Theme.Palette.paper

    NotePage {
        anchors.fill: parent
    }

    Text {
        color: Theme.Palette.ink
        font: Theme.Typo.pageTitle
        text: "Varnic"
    }
}
