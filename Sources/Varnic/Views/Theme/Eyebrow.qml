import QtQuick
import Varnic.Theme as Theme

/// A small heading in capitals over a group of things.
Text {
    Accessible.name: text
    Accessible.role: Accessible.Heading
    color: Theme.Palette.inkFaint
    font: Theme.Typo.eyebrow
}
