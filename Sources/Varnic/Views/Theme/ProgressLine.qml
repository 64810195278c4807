import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// How far something has come, from 0 to 1.
T.ProgressBar {
    id: bar

    /// What goes on, for assistive programs.
    required property string name

    Accessible.name: name
    implicitHeight: 6
    implicitWidth: 160

    background: Rectangle {
        color: Theme.Palette.washHover
        radius: 3
    }
    contentItem: Item {
        Rectangle {
            color: Theme.Palette.you
            height: parent.height
            radius: 3
            width: bar.visualPosition * parent.width
        }
    }
}
