import QtQuick
import Varnic.Theme as Theme

/// A small heading in capitals over a group of things.
Heading {
    color: Theme.Palette.inkFaint
    font: Theme.Typo.eyebrow
    level: 3
}
