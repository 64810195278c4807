import QtQuick
import Varnic.Theme

/// The red dot of a running recording.
Rectangle {
    color: Palette.record
    height: width
    radius: width / 2
}
