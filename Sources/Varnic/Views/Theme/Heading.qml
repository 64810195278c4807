import QtQuick

/// A text that heads what is below it.
Text {
    /// 1 for the window's and a sheet's own, 2 for those of their parts, 3 for small ones. Told in words, since Qt has no
    /// way to tell it to assistive programs.
    property int level: 2

    Accessible.description: "Level " + level
    Accessible.ignored: text === ""
    Accessible.name: text
    Accessible.role: Accessible.Heading
}
