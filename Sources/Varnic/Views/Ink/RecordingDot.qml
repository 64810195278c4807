import QtQuick
import Varnic.Theme as Theme

/// The red dot of a running recording.
Rectangle {
    color: Theme.Palette.record
    height: width
    radius: width / 2
}
