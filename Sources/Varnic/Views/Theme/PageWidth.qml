pragma Singleton
import QtQml

/// The width of a sheet of paper, in points.
QtObject {
    readonly property int max: 700
}
