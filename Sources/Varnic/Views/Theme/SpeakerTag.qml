import QtQuick
import Varnic.Theme as Theme

/// The name of a side of the call in that side's ink.
Rectangle {
    id: tag

    property string name
    property bool you

    Accessible.ignored: name === ""
    Accessible.name: name
    Accessible.role: Accessible.StaticText
    color: you ? Theme.Palette.youWash : Theme.Palette.themWash
    implicitHeight: label.implicitHeight + 3
    implicitWidth: label.implicitWidth + 12
    radius: height / 2

    Text {
        id: label

        Accessible.ignored: true
        anchors.centerIn: parent
        color: tag.you ? Theme.Palette.you : Theme.Palette.them
        elide: Text.ElideRight
        font: Theme.Typo.system(10.5, Font.DemiBold)
        text: tag.name
        width: Math.min(implicitWidth, tag.width - 12)
    }
}
