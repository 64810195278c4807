pragma Singleton
import QtQuick
import Varnic.Theme.Native

/// The two movements of the program. Springs of damping 0.86 and 0.88 overshoot by less than one part in a hundred, so
/// an easing curve stands for each; it lasts as long as the spring takes to come within one part in a hundred of its
/// rest.
/// With reduced motion nothing moves: both last 0 ms.
QtObject {
    /// Milliseconds, for things that change their place or size (response 0.32 s).
    readonly property int layout: Appearance.reduceMotion ? 0 : 300
    /// Milliseconds, for small things (response 0.24 s).
    readonly property int snappy: Appearance.reduceMotion ? 0 : 220
    readonly property int easing: Easing.OutCubic
    /// Milliseconds, for a button that answers a press.
    readonly property int press: Appearance.reduceMotion ? 0 : 120
}
