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
    /// It turns something on and off, as assistive programs are told; whether that is on, its owner knows.
    property bool isSwitch
    property bool isOn
    /// A press is the end of the tip, which would lie over what it opens, until the pointer comes anew.
    property bool isAnswered

    /// Does what a press does.
    function activate() {
        if (checkable) {
            toggle();
        }
        clicked();
    }

    Accessible.checked: isOn
    Accessible.description: help === text ? "" : help
    Accessible.onPressAction: activate()
    focusPolicy: Qt.TabFocus
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding

    Keys.onEnterPressed: activate()
    Keys.onReturnPressed: activate()
    onHoveredChanged: isAnswered = false
    onPressed: isAnswered = true

    FocusRing {
        corner: button.corner
        visible: button.visualFocus
    }

    Loader {
        id: tip

        active: button.help !== "" && button.hovered && !button.isAnswered
        anchors.fill: parent

        sourceComponent: HelpTip {
            visible: true
        }
    }

    Binding {
        property: "text"
        target: tip.item
        value: button.help
        when: tip.item !== null
    }
}
