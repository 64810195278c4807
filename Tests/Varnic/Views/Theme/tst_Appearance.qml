import QtQuick
import QtTest
import Varnic.Tests
import Varnic.Theme as Theme

TestCase {
    readonly property string gnome: "org.gnome.desktop.interface"
    readonly property string look: "org.freedesktop.appearance"

    name: "Appearance"

    function init() {
        Portal.changeNumber(look, "color-scheme", 2);
        Portal.changeNumber(look, "reduced-motion", 0);
        Portal.changeSwitch(gnome, "enable-animations", true);
        tryVerify(() => !Theme.Palette.dark && Theme.Motion.layout === 300);
    }

    function cleanupTestCase() {
        init();
    }

    function test_withoutAnOpinionThePaletteSays() {
        Portal.changeNumber(look, "color-scheme", 0);
        Portal.setApplicationPalette(true);
        tryCompare(Theme.Palette, "dark", true);
        Portal.setApplicationPalette(false);
        tryCompare(Theme.Palette, "dark", false);
    }

    function test_opinionCountsMoreThanThePalette() {
        Portal.setApplicationPalette(true);
        Portal.changeNumber(look, "color-scheme", 1);
        tryCompare(Theme.Palette, "dark", true);
        compare(Theme.Palette.paper, "#15161a");
        Portal.changeNumber(look, "color-scheme", 2);
        tryCompare(Theme.Palette, "dark", false);
        compare(Theme.Palette.paper, "#faf7f0");
        Portal.setApplicationPalette(false);
    }

    function test_motionStopsForEitherSwitch() {
        Portal.changeNumber(look, "reduced-motion", 1);
        tryCompare(Theme.Motion, "layout", 0);
        compare(Theme.Motion.snappy, 0);
        Portal.changeNumber(look, "reduced-motion", 0);
        tryCompare(Theme.Motion, "layout", 300);
        Portal.changeSwitch(gnome, "enable-animations", false);
        tryCompare(Theme.Motion, "layout", 0);
    }

    /// The channel's light as WCAG 2 has it.
    function linear(channel) {
        return channel <= 0.04045 ? channel / 12.92 : Math.pow((channel + 0.055) / 1.055, 2.4);
    }

    function luminance(color) {
        return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
    }

    function contrast(one, other) {
        return (Math.max(luminance(one), luminance(other)) + 0.05) / (Math.min(luminance(one), luminance(other)) + 0.05);
    }

    function test_textIsReadable() {
        for (const scheme of [1, 2]) {
            Portal.changeNumber(look, "color-scheme", scheme);
            tryCompare(Theme.Palette, "dark", scheme === 1);
            for (const ground of ["paper", "sidebar", "surface"]) {
                verify(contrast(Theme.Palette.ink, Theme.Palette[ground]) >= 7, ground);
            }
            for (const text of ["inkSoft", "you", "them"]) {
                verify(contrast(Theme.Palette[text], Theme.Palette.paper) >= 4.5, text);
            }
        }
    }
}
