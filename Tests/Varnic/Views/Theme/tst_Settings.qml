import QtQuick
import QtTest
import Varnic.Theme as Theme

Item {
    id: page

    property list<string> choices: ["Ann", "Ben", "Cleo"]
    property int chosen
    property bool isOn
    property bool takes: true

    height: 400
    width: 400

    Column {
        width: 300

        Theme.PaperSwitch {
            id: control

            detail: "It floats."
            isOn: page.isOn
            text: "Show the pill"
            width: parent.width

            onChosen: isOn => {
                if (page.takes) {
                    page.isOn = isOn;
                }
            }
        }

        Theme.PaperPicker {
            id: picker

            choices: page.choices
            details: ["the first"]
            name: "Who"
            prompt: "Nobody"
            selected: page.chosen

            onChosen: index => {
                if (page.takes) {
                    page.chosen = index;
                }
            }
        }
    }

    TestCase {
        name: "SettingsControls"
        when: windowShown

        function init() {
            page.takes = true;
            page.chosen = 0;
            page.isOn = false;
            page.choices = ["Ann", "Ben", "Cleo"];
        }

        function test_switchIsTurned_data() {
            return [{
                    "tag": "mouse",
                    "turn": () => mouseClick(control)
                }, {
                    "tag": "space",
                    "turn": () => keyClick(Qt.Key_Space)
                }, {
                    "tag": "return",
                    "turn": () => keyClick(Qt.Key_Return)
                }, {
                    "tag": "assistive program",
                    "turn": () => control.checked = !control.checked
                }];
        }

        function test_switchIsTurned(data) {
            control.forceActiveFocus(Qt.TabFocusReason);
            data.turn();
            verify(page.isOn);
            verify(findChild(control, "focusRing").visible);
        }

        function test_pickerIsChosenFrom_data() {
            return [{
                    "tag": "arrow",
                    "choose": () => keyClick(Qt.Key_Down)
                }, {
                    "tag": "list",
                    "choose": () => {
                        keyClick(Qt.Key_Space);
                        tryVerify(() => picker.popup.opened);
                        keyClick(Qt.Key_Down);
                        keyClick(Qt.Key_Return);
                        tryVerify(() => !picker.popup.visible);
                    }
                }];
        }

        function test_pickerIsChosenFrom(data) {
            picker.forceActiveFocus(Qt.TabFocusReason);
            data.choose();
            compare(page.chosen, 1);
            compare(picker.displayText, "Ben");
        }

        function test_switchShowsWhatHolds() {
            page.takes = false;
            mouseClick(control);
            verify(!control.checked);
            page.takes = true;
            mouseClick(control);
            verify(control.checked);
            page.isOn = false;
            verify(!control.checked);
        }

        function test_pickerShowsWhatHolds() {
            picker.forceActiveFocus(Qt.TabFocusReason);
            page.takes = false;
            keyClick(Qt.Key_Down);
            compare(picker.displayText, "Ann");
            page.takes = true;
            page.chosen = 2;
            compare(picker.displayText, "Cleo");
            page.choices = ["Zoe", "Ann", "Ben"];
            compare(picker.displayText, "Ben");
            page.chosen = -1;
            compare(picker.displayText, "Nobody");
        }
    }
}
