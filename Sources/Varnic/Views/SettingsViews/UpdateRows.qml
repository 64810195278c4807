import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme
import Varnic.Update

/// How the program is kept up to date.
FormSection {
    readonly property bool hasUpdater: UpdateModel.isOn

    title: "Updates"

    FormRow {
        name: SettingsWindow.Updates

        Theme.PaperSwitch {
            detail: "New versions download in the background and install when you quit"
            isOn: UpdateModel.automaticallyDownloads
            text: "Download and install updates automatically"
            width: parent.width

            onChosen: isOn => UpdateModel.automaticallyDownloads = isOn
        }
    }

    ControlRow {
        text: UpdateModel.status

        Theme.QuietButton {
            text: "Check Now"

            onClicked: UpdateModel.checkNow()
        }
    }
}
