import QtQuick
import QtTest
import Varnic.Theme as Theme

/// What the keyboard is on when what it was on can't be used.
Item {
    id: page

    height: 200
    width: 400

    Theme.FocusKeeper {
        id: keeper

        window: page.Window.window
    }

    FocusScope {
        anchors.fill: parent
        focus: true

        Theme.QuietButton {
            id: outside

            text: "Outside"
        }

        Theme.QuietButton {
            id: edge

            readonly property bool isPassedBy: true

            text: "Edge"
        }

        FocusScope {
            TextInput {
                id: words

                activeFocusOnTab: true
                focus: true
            }

            Theme.QuietButton {
                id: lost

                text: "Lost"
            }

            Theme.QuietButton {
                id: near

                text: "Near"
            }
        }

        Flickable {
            id: paper
            contentHeight: 1000
            height: 100
            width: 100
            y: 100

            Theme.QuietButton {
                id: below

                text: "Below"
                y: 900
            }
        }
    }

    TestCase {
        name: "FocusKeeper"
        when: windowShown

        function init() {
            for (const item of [near, lost, outside]) {
                item.enabled = true;
                item.visible = true;
            }
            words.text = "";
        }

        function comeTo(item) {
            item.forceActiveFocus(Qt.TabFocusReason);
            // The keeper looks once all changes of a turn are through.
            tryVerify(() => item.activeFocus);
            wait(0);
        }

        function test_whatIsGone_givesTheKeyboardToWhatIsNear_data() {
            return [{
                    "tag": "hidden",
                    "property": "visible"
                }, {
                    "tag": "disabled",
                    "property": "enabled"
                }];
        }

        function test_whatIsGone_givesTheKeyboardToWhatIsNear(data) {
            comeTo(outside);
            comeTo(lost);
            lost[data.property] = false;
            tryVerify(() => near.activeFocus);
            lost[data.property] = true;
            tryVerify(() => lost.activeFocus);
        }

        function test_nothingNear_leadsBackToWhereItWas() {
            comeTo(outside);
            comeTo(edge);
            comeTo(lost);
            near.visible = false;
            lost.visible = false;
            tryVerify(() => outside.activeFocus);
        }

        function test_anotherControlChosenMeanwhile_keepsTheKeyboard() {
            comeTo(lost);
            lost.enabled = false;
            tryVerify(() => near.activeFocus);
            comeTo(outside);
            lost.enabled = true;
            wait(0);
            verify(outside.activeFocus);
        }

        function test_back_leavesTheGroup() {
            comeTo(outside);
            comeTo(lost);
            comeTo(near);
            verify(keeper.back());
            verify(outside.activeFocus);
        }

        function test_whatIsOutOfSight_isScrolledTo() {
            comeTo(below);
            tryVerify(() => paper.contentY > 800);
            verify(below.y < paper.contentY + paper.height);
        }
    }
}
