import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

// Delegates use ids of this file; `pragma ComponentBehavior: Bound`, meant for that, is incomplete in Qt 6.4.
// qmllint disable unqualified

/// One of several choices, which open as a list. Whoever shows it binds `selected` and changes what that stands for
/// when another is `chosen`.
T.ComboBox {
    id: picker

    required property list<string> choices
    /// A few words about each choice, shown in the list; may be shorter than the choices.
    property list<string> details
    /// What is chosen, for assistive programs.
    required property string name
    /// The index of the choice that holds, or -1.
    required property int selected
    /// Shown where nothing is selected.
    property string prompt

    signal chosen(int index)

    /// Shows what holds, also after a list or a choice of another kind.
    function follow() {
        currentIndex = Qt.binding(() => selected);
    }

    Accessible.description: displayText
    Accessible.name: name
    Accessible.onPressAction: popup.visible ? popup.close() : popup.open()
    currentIndex: selected
    displayText: currentIndex < 0 ? prompt : currentText
    focusPolicy: Qt.StrongFocus
    font: Theme.Typo.ui
    implicitHeight: 30
    implicitWidth: 220
    leftPadding: 10
    model: choices
    opacity: enabled ? 1 : 0.45
    rightPadding: 28

    background: Rectangle {
        border.color: Theme.Palette.rule
        border.width: 1
        color: picker.down || picker.hovered ? Theme.Palette.washHover : Theme.Palette.wash
        radius: Theme.Radius.control

        FocusRing {
            visible: picker.visualFocus
        }
    }
    contentItem: Text {
        Accessible.ignored: true
        color: picker.currentIndex < 0 ? Theme.Palette.inkSoft : Theme.Palette.ink
        elide: Text.ElideRight
        font: picker.font
        text: picker.displayText
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
    }
    delegate: PickerItem {
        detail: picker.details[index] ?? ""
        highlighted: picker.highlightedIndex === index
        isSelected: picker.currentIndex === index
        width: ListView.view?.width ?? 0
    }
    indicator: Theme.Symbol {
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkSoft
        name: "chevron.down"
        size: 10
    }
    popup: T.Popup {
        // Like a menu, at least as wide as what it opens from, and in the window.
        implicitHeight: Math.min(contentItem.implicitHeight + 2 * padding, 320)
        margins: 6
        padding: 5
        width: Math.max(picker.width, 260)
        x: picker.width - width
        y: picker.height + 4

        background: Rectangle {
            border.color: Theme.Palette.rule
            border.width: 1
            color: Theme.Palette.surface
            radius: Theme.Radius.control

            Theme.Shadow {
                height: parent.height + 2 * blur
                radius: Theme.Radius.control
                width: parent.width + 2 * blur
                x: -blur
                y: 3 - blur
                z: -1
            }
        }
        contentItem: ListView {
            Accessible.name: picker.name
            Accessible.role: Accessible.List
            clip: true
            currentIndex: picker.highlightedIndex
            highlightMoveDuration: 0
            implicitHeight: contentHeight
            model: picker.popup.visible ? picker.delegateModel : null

            T.ScrollBar.vertical: ThinScrollBar {
            }
        }
    }

    onActivated: index => {
        if (index !== selected) {
            chosen(index);
        }
        follow();
    }
    onModelChanged: follow()
}
