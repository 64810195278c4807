import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// Sidebar, list and detail, with the sheets above them and the notice at the bottom.
FocusScope {
    id: view

    /// What takes longer, or shows nothing before the library is read, comes after the first picture.
    property bool isWhole: false

    Keys.onEscapePressed: {
        if (!keeper.back()) {
            list.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
    onWidthChanged: Columns.windowWidth = width

    Theme.FocusKeeper {
        id: keeper

        window: view.Window.window
    }

    Connections {
        function onFrameSwapped() {
            view.isWhole = true;
        }

        enabled: !view.isWhole
        target: view.Window.window
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.Palette.paper
    }

    Item {
        id: sidebarSpace

        clip: true
        height: parent.height
        visible: width > 0
        width: Columns.showsSidebar ? Columns.sidebarWidth : 0

        Behavior on width  {
            enabled: !sidebarDivider.isDragged

            NumberAnimation {
                duration: Theme.Motion.layout
                easing.type: Theme.Motion.easing
            }
        }

        Sidebar {
            anchors.right: parent.right
            height: parent.height
            width: Columns.sidebarWidth
        }
    }

    ColumnDivider {
        id: sidebarDivider

        anchors.left: sidebarSpace.right
        height: parent.height
        name: "Width of the sidebar"
        objectName: "sidebarDivider"
        visible: sidebarSpace.visible
        width: visible ? 1 : 0
        z: 1

        onDraggedBy: delta => Columns.sidebarWidth += delta
    }

    ListColumn {
        id: list

        anchors.left: sidebarDivider.right
        focus: true
        height: parent.height
        isWhole: view.isWhole
        width: Columns.listWidth
    }

    ColumnDivider {
        id: listDivider

        anchors.left: list.right
        height: parent.height
        name: "Width of the list"
        z: 1

        onDraggedBy: delta => Columns.listWidth += delta
    }

    Loader {
        active: view.isWhole
        anchors.bottom: parent.bottom
        anchors.left: listDivider.right
        anchors.right: parent.right
        anchors.top: parent.top
        source: "qrc:/qt/qml/Varnic/NotePage/Detail.qml"
    }

    ToastPlace {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.Space.l
        anchors.horizontalCenter: parent.horizontalCenter
        z: 2
    }

    DropArea {
        anchors.fill: parent
        keys: ["text/uri-list"]

        onDropped: drop => {
            drop.accept(Qt.CopyAction);
            Library.importFiles(drop.urls);
        }
    }

    Loader {
        active: Library.showConsent
        source: "qrc:/qt/qml/Varnic/SettingsViews/ConsentSheet.qml"
    }

    Loader {
        active: Library.showSetup
        source: "qrc:/qt/qml/Varnic/SettingsViews/SetupSheet.qml"
    }

    Loader {
        active: Library.isStudying
        source: "qrc:/qt/qml/Varnic/Study/StudyView.qml"
    }

    MenuShortcuts {
    }

    Shortcut {
        sequence: "Ctrl+F"

        onActivated: list.search()
    }
}
