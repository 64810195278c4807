import QtQuick
import QtTest
import Varnic.Theme as Theme

Item {
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
