import QtQuick
import Varnic.Theme

/// One note as a sheet of paper.
Rectangle {
    color: Palette.paper
}
