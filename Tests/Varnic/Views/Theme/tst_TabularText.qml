import QtQuick
import QtTest
import Varnic.Theme as Theme

Item {
    height: 100
    width: 400

    TestCase {
        name: "TabularText"
        when: windowShown

        Theme.TabularText {
            id: clock

            font: Theme.Typo.uiStrong
        }

        Text {
            id: plain

            font: Theme.Typo.uiStrong
        }

        function widthOf(text) {
            clock.text = text;
            waitForRendering(clock);
            return clock.implicitWidth;
        }

        function test_digitsAreEquallyWide() {
            const width = widthOf("Stop · 1:11:11");
            compare(widthOf("Stop · 4:40:00"), width);
            verify(widthOf("Stop · 10:40:00") > width);
            compare(widthOf(""), 0);
        }

        /// Letters and blanks are as wide as in any text.
        function test_otherTextIsAsItWas() {
            plain.text = "Record Call";
            verify(Math.abs(widthOf("Record Call") - plain.implicitWidth) < 1.5);
        }
    }
}
