pragma Singleton
import QtQuick
import Varnic.Theme.Native

/// Every colour of the program, in the light or the dark form that the desktop asks for.
QtObject {
    readonly property bool dark: Appearance.dark

    /// Page ground.
    readonly property color paper: dark ? "#15161A" : "#FAF7F0"
    /// Sidebar, transcript panel.
    readonly property color sidebar: dark ? "#1B1C21" : "#F2EEE4"
    /// Cards, pill.
    readonly property color surface: dark ? "#1F2026" : "#FFFFFF"
    /// Chips, quiet buttons.
    readonly property color wash: dark ? "#2A2B32" : "#ECE7DB"
    /// Pressed or hovered wash.
    readonly property color washHover: dark ? "#34353D" : "#E3DDCF"
    /// Main text.
    readonly property color ink: dark ? "#ECE8DF" : "#1D2233"
    /// Secondary text.
    readonly property color inkSoft: dark ? "#A9A9B3" : "#5C6172"
    /// Tertiary text, placeholders.
    readonly property color inkFaint: dark ? "#6F717B" : "#969AA6"
    /// Hairlines.
    readonly property color rule: dark ? Qt.rgba(1, 1, 1, 0.09) : Qt.rgba(0x1d / 255, 0x22 / 255, 0x33 / 255, 0.10)
    /// Your ink.
    readonly property color you: dark ? "#8EA7F2" : "#2E4FA6"
    /// Their ink.
    readonly property color them: dark ? "#EF9474" : "#B04A2E"
    /// Your tint.
    readonly property color youWash: Qt.rgba(you.r, you.g, you.b, dark ? 0.14 : 0.09)
    /// Behind selected text; opaque, since the text is drawn once more over it.
    readonly property color selection: Qt.tint(paper, youWash)
    /// Their tint.
    readonly property color themWash: Qt.rgba(them.r, them.g, them.b, dark ? 0.14 : 0.09)
    /// Recording marks.
    readonly property color record: dark ? "#FF6A5C" : "#D63B2F"
    /// Primary button fill.
    readonly property color buttonInk: dark ? "#3A5BC4" : "#2E4FA6"
    /// Recording button fill.
    readonly property color buttonRecord: dark ? "#D2463A" : "#D63B2F"
    /// Success.
    readonly property color ok: dark ? "#66CF98" : "#2F8A5B"
    /// Warning.
    readonly property color warn: dark ? "#E8AE52" : "#B4720F"
    /// Search matches.
    readonly property color highlight: Qt.rgba(0xf4 / 255, 0xd3 / 255, 0x5e / 255, dark ? 0.28 : 0.45)
}
