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

        active: Toast.shows
        anchors.horizontalCenter: parent.horizontalCenter

        sourceComponent: Item {
            id: rising

            property string shownId: Toast.toastId

            implicitHeight: view.implicitHeight
            implicitWidth: view.implicitWidth

            onShownIdChanged: entrance.restart()

            Theme.ToastView {
                id: view

                objectName: "toast"

                symbol: Toast.symbol
                text: Toast.text
                undoable: Toast.undoable

                onDismissed: Toast.dismiss()
                onUndone: Toast.undo()
            }

            ParallelAnimation {
                id: entrance

                running: true

                NumberAnimation {
                    duration: Theme.Motion.snappy
                    easing.type: Theme.Motion.easing
                    from: 40
                    property: "y"
                    target: view
                    to: 0
                }

                NumberAnimation {
                    duration: Theme.Motion.snappy
                    from: 0
                    property: "opacity"
                    target: view
                    to: 1
                }
            }
        }
    }
}
