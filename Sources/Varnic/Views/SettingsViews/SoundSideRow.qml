import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// What one side of a call is recorded from, with its level beside it.
ControlRow {
    id: row

    required property string prompt
    required property DeviceSide side

    detail: side?.notice ?? ""
    text: prompt

    Column {
        spacing: 6

        Theme.PaperPicker {
            choices: row.side?.choices ?? []
            details: row.side?.details ?? []
            name: row.prompt
            selected: row.side?.selected ?? -1
            width: 300

            onChosen: index => row.side.selected = index
        }

        LevelMeter {
            level: row.side?.level ?? 0
            name: "Level: " + row.prompt
            width: 300
        }
    }
}
