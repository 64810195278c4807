import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A button without a look of its own: keys, focus ring, help and what assistive programs are told. The others are
/// made of it.
T.Button {
    id: button

    /// The corners of the focus ring.
    property real corner: Theme.Radius.control
    /// What it does, for its tool tip and for assistive programs.
    property string help

    Accessible.description: help === text ? "" : help
    focusPolicy: Qt.TabFocus
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding

    Keys.onEnterPressed: click()
    Keys.onReturnPressed: click()

    Loader {
        active: button.visualFocus
        anchors.fill: parent

        sourceComponent: FocusRing {
            corner: button.corner
        }
    }

    Loader {
        active: button.help !== "" && button.hovered && !button.down
        anchors.fill: parent

        sourceComponent: Item {
            HelpTip {
                text: button.help
                visible: true
            }
        }
    }
}
