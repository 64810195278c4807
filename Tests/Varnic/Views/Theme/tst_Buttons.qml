import QtQuick
import QtTest
import Varnic.Theme as Theme

Item {
    height: 100
    width: 400

    Row {
        Theme.InkButton {
            id: ink

            help: "Keeps what was written"
            text: "Save"
        }

        Theme.QuietButton {
            id: quiet

            compact: true
            symbol: "plus"
            text: "Row"
        }

        Theme.IconButton {
            id: icon

            help: "Collapse"
            symbol: "chevron.up"
        }
    }

    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    TestCase {
        name: "Buttons"
        when: windowShown

        function test_keysPress() {
            for (const button of [ink, quiet, icon]) {
                clicks.target = button;
                clicks.clear();
                button.forceActiveFocus(Qt.TabFocusReason);
                for (const key of [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter]) {
                    keyClick(key);
                }
                compare(clicks.count, 3, button.text);
                button.enabled = false;
                keyClick(Qt.Key_Return);
                mouseClick(button);
                compare(clicks.count, 3, button.text);
                button.enabled = true;
            }
        }

        function test_tabWalksThroughThem() {
            ink.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(quiet.activeFocus);
            keyClick(Qt.Key_Tab);
            verify(icon.activeFocus);
        }

        function ring(button) {
            return findChild(button, "focusRing");
        }

        function test_ringShowsForTheKeyboardOnly() {
            ink.forceActiveFocus(Qt.TabFocusReason);
            verify(ring(ink).visible);
            quiet.forceActiveFocus(Qt.MouseFocusReason);
            verify(!ring(ink).visible);
            verify(!ring(quiet).visible);
        }

        function test_clickLeavesTheFocusWhereItIs() {
            ink.forceActiveFocus(Qt.TabFocusReason);
            mouseClick(quiet);
            verify(ink.activeFocus);
        }

        function test_assistiveProgramsAreTold() {
            compare(icon.Accessible.name, "Collapse");
            compare(icon.Accessible.description, "");
            compare(ink.Accessible.description, "Keeps what was written");
        }
    }
}
