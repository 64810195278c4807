import QtQuick
import Varnic.NotePage
import Varnic.Theme

/// Sidebar, list and detail.
Rectangle {
    color: Palette.paper

    NotePage {
        anchors.fill: parent
    }

    Text {
        color: Palette.ink
        font: Typo.pageTitle
        text: "Varnic"
    }
}
