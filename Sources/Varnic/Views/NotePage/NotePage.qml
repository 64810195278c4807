import QtQuick
import Varnic.Theme as Theme

/// One note as a sheet of paper.
Rectangle {
    color: Theme.Palette.paper
}
