import QtQuick
import QtTest
import Varnic.Theme as Theme

Item {
    id: page

    property string query
    property int tone

    height: 200
    width: 400

    Column {
        Theme.SearchField {
            id: search

            placeholderText: "Find in transcript"
            text: page.query
            width: 200

            onTextChanged: page.query = text
        }

        Theme.SegmentedControl {
            id: segments

            choices: ["Friendly", "Formal", "Brief"]
            currentIndex: page.tone
            name: "Tone"

            onChosen: index => page.tone = index
        }

        Theme.PaperCheckBox {
            id: box

            text: "Remind me"
        }
    }

    TestCase {
        name: "Fields"
        when: windowShown

        function init() {
            page.query = "";
            page.tone = 0;
        }

        function test_searchIsWhatIsTypedAndWhatItIsSetTo() {
            search.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_A);
            compare(page.query, "a");
            page.query = "elsewhere";
            compare(search.text, "elsewhere");
            keyClick(Qt.Key_Escape);
            compare(page.query, "");
            page.query = "again";
            compare(search.text, "again");
        }

        function test_pastedLineBreaksAreBlanks_data() {
            return [{
                    "tag": "within",
                    "pasted": "two\r\nlines",
                    "shown": "two lines"
                }, {
                    "tag": "at the ends",
                    "pasted": "\nname\n\n",
                    "shown": "name"
                }];
        }

        function test_pastedLineBreaksAreBlanks(data) {
            search.insert(0, data.pasted);
            compare(page.query, data.shown);
            compare(search.text, data.shown);
            compare(search.cursorPosition, data.shown.length);
            page.query = "elsewhere";
            compare(search.text, "elsewhere");
        }

        function test_crossEmptiesAndLeavesTheKeyboardInTheField() {
            const cross = findChild(search, "clear");
            verify(!cross.visible);
            page.query = "word";
            verify(cross.visible);
            box.forceActiveFocus(Qt.TabFocusReason);
            mouseClick(cross);
            compare(page.query, "");
            verify(search.activeFocus);
        }

        function segment(index) {
            return segments.children[index];
        }

        function test_oneSegmentIsChosen_data() {
            return [{
                    "tag": "mouse",
                    "choose": button => mouseClick(button)
                }, {
                    "tag": "key",
                    "choose": button => {
                        button.forceActiveFocus(Qt.TabFocusReason);
                        keyClick(Qt.Key_Space);
                    }
                }, {
                    "tag": "assistive program",
                    "choose": button => button.toggle()
                }];
        }

        function test_oneSegmentIsChosen(data) {
            data.choose(segment(2));
            compare(page.tone, 2);
            compare([0, 1, 2].map(index => segment(index).checked), [false, false, true]);
        }

        function test_segmentsFollowTheirOwner() {
            page.tone = 1;
            verify(segment(1).checked);
            verify(!segment(0).checked);
        }

        function test_keyChecksTheBox() {
            box.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            verify(box.checked);
            verify(findChild(box, "focusRing"));
        }

        function test_assistiveProgramsAreTold() {
            compare(search.Accessible.name, "Find in transcript");
            verify(search.Accessible.searchEdit);
            compare(segments.Accessible.name, "Tone");
            compare(segment(1).Accessible.name, "Formal");
            compare(box.Accessible.name, "Remind me");
        }
    }
}
