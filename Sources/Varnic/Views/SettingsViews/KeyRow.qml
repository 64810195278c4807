import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// The key for the provider, which is never shown once it is saved.
ControlRow {
    id: row

    /// The key is there, and the button has said so.
    readonly property bool isKept: KeySettings.isSaved && !KeySettings.isJustSaved

    Component.onCompleted: KeySettings.look()
    detail: KeySettings.problem
    name: SettingsWindow.Key
    text: "API key"

    Connections {
        function onSaved() {
            draft.clear();
        }

        function onProviderChanged() {
            draft.clear();
        }

        target: KeySettings
    }

    Text {
        Accessible.name: text
        Accessible.role: Accessible.StaticText
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.Palette.inkSoft
        font: Theme.Typo.ui
        text: KeySettings.savedText
        visible: row.isKept
    }

    Theme.QuietButton {
        Accessible.description: "API key"
        enabled: !KeySettings.isBusy
        text: "Remove"
        visible: row.isKept

        onClicked: KeySettings.remove()
    }

    Theme.SecretField {
        id: draft

        placeholderText: "Paste your key"
        visible: !row.isKept
        width: 220

        onAccepted: KeySettings.save(text)
    }

    Theme.QuietButton {
        Accessible.description: "API key"
        enabled: !KeySettings.isBusy && (draft.text !== "" || KeySettings.isJustSaved)
        text: KeySettings.isJustSaved ? "Saved" : "Save"
        visible: !row.isKept

        onClicked: KeySettings.save(draft.text)
    }

    Theme.QuietButton {
        text: "Try Again"
        visible: KeySettings.canLookAgain

        onClicked: KeySettings.look()
    }

    Theme.Spinner {
        anchors.verticalCenter: parent.verticalCenter
        visible: KeySettings.isBusy
    }
}
