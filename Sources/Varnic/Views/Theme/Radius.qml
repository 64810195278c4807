pragma Singleton
import QtQml

/// Corner radii, in points.
QtObject {
    readonly property int control: 8
    readonly property int card: 12
}
