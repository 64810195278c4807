import QtQuick
import QtTest
import Varnic.Theme as Theme

TestCase {
    name: "Palette"
    function test_a() {
        compare(Theme.Palette.dark, false);
        compare(Theme.Motion.layout, 300);
    }
}
