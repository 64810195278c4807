import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// The button over the to-dos of a note, with its title. The list's keys reach it as a row of the list.
Theme.PlainButton {
    id: button

    /// The row that the list's keys are on.
    required property bool isCurrent

    Accessible.focusable: true
    Accessible.focused: isCurrent
    focusPolicy: Qt.NoFocus
    horizontalPadding: 10
    verticalPadding: 4

    background: ListGround {
        isCurrent: button.isCurrent || button.down
        isFocused: button.isCurrent
        isHovered: button.hovered
    }
    contentItem: Text {
        Accessible.ignored: true
        color: Theme.Palette.inkSoft
        elide: Text.ElideRight
        font: Theme.Typo.captionStrong
        text: button.text
        textFormat: Text.PlainText
    }
}
