pragma Singleton
import QtQml

/// Distances between things, in points.
QtObject {
    readonly property int s: 8
    readonly property int m: 12
    readonly property int l: 16
    readonly property int xl: 24
    readonly property int xxl: 32
}
