import QtQuick
import Varnic.Theme as Theme

/// The page shown while a call is recorded.
Rectangle {
    color: Theme.Palette.paper
}
