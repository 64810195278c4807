import QtQuick
import Varnic.Theme as Theme

// Components use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// Whose a to-do is and when it is due. Without either it takes no place.
Loader {
    id: tags

    required property string due
    required property bool isYours
    required property string ownerName

    active: due !== "" || ownerName !== ""
    width: active ? implicitWidth : 0

    sourceComponent: Row {
        spacing: Theme.Space.s
        topPadding: 4

        Theme.SpeakerTag {
            name: tags.ownerName
            visible: tags.ownerName !== ""
            you: tags.isYours
        }

        Theme.Chip {
            symbol: "calendar"
            text: tags.due
            visible: tags.due !== ""
        }
    }
}
