import QtQuick
import Varnic.Theme

/// The page shown while a call is recorded.
Rectangle {
    color: Palette.paper
}
