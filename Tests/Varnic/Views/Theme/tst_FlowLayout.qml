import QtQuick
import QtTest
import Varnic.Theme as Theme

Item {
    id: stage

    height: 400
    width: 800

    Theme.FlowLayout {
        id: repeated

        spacing: 4
        width: 100

        Repeater {
            id: repeater

            model: 3

            Rectangle {
                height: 10
                width: 40
            }
        }

        Rectangle {
            id: last

            height: 10
            width: 12
        }
    }

    TestCase {
        id: testCase

        name: "FlowLayout"
        when: windowShown

        Component {
            id: flowComponent

            Theme.FlowLayout {
                spacing: 10
            }
        }

        Component {
            id: box

            Rectangle {
            }
        }

        /// A flow of boxes of these sizes.
        function flow(sizes, properties) {
            const made = createTemporaryObject(flowComponent, stage, properties);
            sizes.forEach(size => createTemporaryObject(box, made, {
                            "width": size[0],
                            "height": size[1]
                        }));
            return made;
        }

        function childrenOf(item) {
            return Array.from({
                    "length": item.children.length
                }, (_, index) => item.children[index]);
        }

        function check(made, places, width, height) {
            waitForItemPolished(made);
            compare(childrenOf(made).map(child => [child.x, child.y]), places);
            compare([made.implicitWidth, made.implicitHeight], [width, height]);
        }

        function checkLine(sizes, places, total) {
            const made = flow(sizes, {
                    "width": 100
                });
            check(made, places, ...total);
            compare(childrenOf(made).map(child => child.width), sizes.map(size => size[0]));
        }

        function test_walk() {
            checkLine([], [], [0, 0]);
            checkLine([[50, 10], [30, 20]], [[0, 0], [60, 0]], [90, 20]);
            checkLine([[50, 10], [40, 10]], [[0, 0], [60, 0]], [100, 10]); // fits exactly
            checkLine([[50, 10], [41, 20], [20, 5]], [[0, 0], [0, 20], [51, 20]], [71, 40]);
            checkLine([[20, 10], [150, 10], [20, 10]], [[0, 0], [0, 20], [0, 40]], [150, 50]); // wider than the line
            checkLine([[150, 10], [20, 10]], [[0, 0], [0, 20]], [150, 30]);
        }

        function test_withoutWidthALineIs600() {
            check(flow([[300, 10], [290, 10], [10, 10]]), [[0, 0], [310, 0], [0, 20]], 600, 30);
        }

        function test_followsChanges() {
            const made = flow([[50, 10], [40, 10], [40, 10]], {
                    "width": 100
                });
            check(made, [[0, 0], [60, 0], [0, 20]], 100, 30);
            made.children[0].visible = false;
            check(made, [[0, 0], [0, 0], [50, 0]], 90, 10);
            made.children[0].visible = true;
            made.children[0].width = 10;
            check(made, [[0, 0], [20, 0], [0, 20]], 60, 30);
            made.spacing = 0;
            check(made, [[0, 0], [10, 0], [50, 0]], 90, 10);
            made.width = 50;
            check(made, [[0, 0], [10, 0], [0, 10]], 50, 20);
            const first = made.children[0];
            first.parent = stage;
            check(made, [[0, 0], [0, 10]], 40, 20);
        }

        function test_repeaterTakesNoPlace() {
            waitForItemPolished(repeated);
            compare(repeater.itemAt(2).y, 14);
            compare([last.x, last.y], [44, 14]);
            repeater.model = 1;
            waitForItemPolished(repeated);
            compare([last.x, last.y], [44, 0]);
            repeater.model = 3;
        }
    }
}
