import QtQuick
import Varnic.NotePage
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// How fast the call is played.
Theme.PlainButton {
    id: button

    required property CallPlayer player

    Accessible.name: "Playback speed " + player.speedText
    Accessible.role: Accessible.ButtonMenu
    enabled: player.available
    help: "Playback speed"
    implicitHeight: 24
    implicitWidth: 44
    objectName: "speed"
    opacity: enabled ? 1 : 0.45

    background: Rectangle {
        color: button.down || button.hovered ? Theme.Palette.wash : "transparent"
        radius: Theme.Radius.control
    }
    contentItem: Text {
        Accessible.ignored: true
        color: Theme.Palette.inkSoft
        font: Theme.Typo.tabular(11.5, Font.DemiBold)
        horizontalAlignment: Text.AlignHCenter
        text: button.player.speedText
        verticalAlignment: Text.AlignVCenter
    }

    onClicked: menu.popup(button, 0, height + 4)

    Theme.PaperMenu {
        id: menu

        title: "Playback speed"
        width: 120

        Instantiator {
            model: button.player.speeds

            Theme.PaperMenuItem {
                required property int index
                required property string modelData

                checkable: true
                checked: index === button.player.speedIndex
                text: modelData

                onTriggered: {
                    checked = Qt.binding(() => index === button.player.speedIndex);
                    button.player.speedIndex = index;
                }
            }

            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu.removeItem(object)
        }
    }
}
