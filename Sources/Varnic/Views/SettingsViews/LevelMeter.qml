import QtQuick
import Varnic.Theme as Theme

/// How loud it is, from 0 to 1.
Rectangle {
    id: meter

    required property real level
    /// What is heard, for assistive programs.
    required property string name

    Accessible.description: Math.round(level * 10) * 10 + " %"
    Accessible.name: name
    Accessible.role: Accessible.ProgressBar
    color: Theme.Palette.washHover
    implicitHeight: 6
    implicitWidth: 160
    radius: 3

    Rectangle {
        color: Theme.Palette.ok
        height: parent.height
        radius: 3
        width: parent.width * Math.max(0, Math.min(1, meter.level))
    }
}
