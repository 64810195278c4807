import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// The window beside the tray icon.
MenuBarWindow {
    id: window

    color: Theme.Palette.paper
    height: view.implicitHeight
    title: "Varnic in the tray"
    width: 300

    onAboutToShow: view.prepare()

    MenuBarView {
        id: view

        anchors.fill: parent
        focus: true

        onClosed: window.hide()
        onOpened: window.openVarnic()
        onQuitted: window.quit()
    }
}
