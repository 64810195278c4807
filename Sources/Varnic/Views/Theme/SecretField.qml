import QtQuick

/// A text that nobody may read over the user's shoulder. Qt tells assistive programs no name of such a field, but its
/// description.
PaperTextField {
    Accessible.description: placeholderText
    Accessible.passwordEdit: true
    echoMode: TextInput.Password
    inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
}
