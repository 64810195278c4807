import QtQuick

/// A text to be read, by assistive programs too.
Text {
    Accessible.ignored: text === ""
    Accessible.name: text
    Accessible.role: Accessible.StaticText
}
