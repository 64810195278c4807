import QtQuick
import Varnic.LibraryViews
import Varnic.Theme as Theme

/// Where notices come in from below, and go.
Item {
    id: place

    implicitHeight: notice.height
    implicitWidth: notice.width

    Loader {
        id: notice

        active: Toast.toastId !== ""
        anchors.horizontalCenter: parent.horizontalCenter

        sourceComponent: Item {
            id: moving

            readonly property string shownId: Toast.toastId
            readonly property bool shows: Toast.shows

            implicitHeight: view.implicitHeight
            implicitWidth: view.implicitWidth

            /// In a window that opens later, the last notice is gone already.
            function enter() {
                if (Toast.shows) {
                    exit.stop();
                    entrance.restart();
                }
            }

            Component.onCompleted: enter()
            onShownIdChanged: enter()
            onShowsChanged: {
                if (!shows) {
                    entrance.stop();
                    exit.restart();
                }
            }

            Theme.ToastView {
                id: view

                enabled: moving.shows
                maximumWidth: Math.min(560, Window.width - 2 * Theme.Space.l)
                objectName: "toast"
                opacity: 0
                symbol: Toast.symbol
                text: Toast.text
                undoable: Toast.undoable
                visible: moving.shows || opacity > 0

                onDismissed: Toast.dismiss()
                onUndone: Toast.undo()
            }

            ToastMotion {
                id: entrance

                isShown: true
                target: view
            }

            ToastMotion {
                id: exit

                isShown: false
                target: view
            }
        }
    }
}
