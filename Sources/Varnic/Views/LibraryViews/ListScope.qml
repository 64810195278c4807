import QtQuick

/// A list in the second column, with what stands in its place while it is empty.
FocusScope {
    required property bool isEmpty

    focus: true
}
