import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// A setting that is on or off: its name at the left and the switch at the right. Whoever shows it binds `isOn` and
/// changes what that stands for when another value is `chosen`.
T.Switch {
    id: control

    /// A sentence about it, below its name; may be empty.
    property string detail
    required property bool isOn

    signal chosen(bool isOn)

    Accessible.description: detail
    Accessible.name: text
    checked: isOn
    focusPolicy: Qt.StrongFocus
    implicitHeight: Math.max(28, implicitContentHeight)
    implicitWidth: implicitContentWidth + rightPadding
    opacity: enabled ? 1 : 0.45
    rightPadding: indicator.width + Theme.Space.m

    contentItem: Column {
        spacing: 2

        Text {
            Accessible.ignored: true
            color: Theme.Palette.ink
            font: Theme.Typo.ui
            height: control.detail === "" ? Math.max(implicitHeight, 28) : implicitHeight
            text: control.text
            verticalAlignment: Text.AlignVCenter
            width: parent.width
            wrapMode: Text.Wrap
        }

        Text {
            Accessible.ignored: true
            color: Theme.Palette.inkSoft
            font: Theme.Typo.caption
            text: control.detail
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
    indicator: Rectangle {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        border.color: Theme.Palette.inkFaint
        border.width: control.checked ? 0 : 1
        color: control.checked ? Theme.Palette.you : Theme.Palette.wash
        height: 20
        radius: 10
        width: 34

        Rectangle {
            color: control.checked ? "white" : Theme.Palette.inkSoft
            height: 14
            radius: 7
            width: 14
            x: control.checked ? 17 : 3
            y: 3

            Behavior on x  {
                NumberAnimation {
                    duration: Theme.Motion.press
                    easing.type: Easing.OutQuad
                }
            }
        }

        FocusRing {
            corner: 10
            visible: control.visualFocus
        }
    }

    Keys.onEnterPressed: toggle()
    Keys.onReturnPressed: toggle()
    // Assistive programs check it without a click. What is not taken is not shown either.
    onCheckedChanged: {
        if (checked !== isOn) {
            chosen(checked);
            checked = Qt.binding(() => isOn);
        }
    }
}
