import QtQuick
import QtTest
import Varnic.Theme as Theme

Item {
    id: window

    height: 100
    width: 400

    TestCase {
        id: testCase

        property var told: []

        name: "ToastView"
        when: windowShown

        Component {
            id: toastComponent

            Theme.ToastView {
                symbol: "trash"
                text: "Deleted “Plans”"

                onDismissed: testCase.told.push("dismissed")
                onUndone: testCase.told.push("undone")
            }
        }

        function test_controlZTakesBack() {
            told = [];
            createTemporaryObject(toastComponent, testCase, {
                    "undoable": true
                });
            keyClick(Qt.Key_Z, Qt.ControlModifier);
            compare(told, ["undone", "dismissed"]);
        }

        /// The text wraps where it has no room; its button stays where it can be pressed.
        function test_longTextWrapsAndKeepsItsButton() {
            const usual = createTemporaryObject(toastComponent, window);
            const toast = createTemporaryObject(toastComponent, window, {
                    "maximumWidth": 300,
                    "text": "Deleted “" + "A title that is rather long ".repeat(4) + "”",
                    "undoable": true
                });
            tryVerify(() => toast.implicitHeight > usual.implicitHeight);
            verify(toast.implicitWidth <= 300);
            toast.width = toast.implicitWidth;
            toast.height = toast.implicitHeight;
            const undo = findChild(toast, "undo");
            const place = undo.mapToItem(toast, 0, 0);
            verify(undo.visible && place.x > 0 && place.x + undo.width <= toast.width - 14);
        }

        function test_withoutUndoNothingIsTakenBack() {
            told = [];
            const toast = createTemporaryObject(toastComponent, testCase);
            keyClick(Qt.Key_Z, Qt.ControlModifier);
            compare(told, []);
            compare(toast.Accessible.role, Accessible.AlertMessage);
            compare(toast.Accessible.name, "Deleted “Plans”");
        }
    }
}
