pragma Singleton
import QtQuick

/// Every font of the program. Sizes are in points of 1/96 inch, that is in pixels at scale 1; Qt's point is 1/72 inch,
/// and its pixel sizes are whole numbers only.
QtObject {
    id: typo

    /// Vollkorn with lining figures.
    readonly property string serif: "Varnic Serif"
    readonly property string sans: "Inter"
    /// Inter with figures of one width.
    readonly property string figures: "Varnic Figures"
    readonly property string mono: "JetBrains Mono"

    readonly property font pageTitle: of(serif, 30, Font.DemiBold)
    readonly property font heading: of(serif, 21, Font.DemiBold)
    readonly property font subheading: of(serif, 17, Font.DemiBold)
    readonly property font body: of(serif, 15.5, Font.Normal)
    readonly property font bodyItalic: Qt.font({
            "family": serif,
            "pointSize": 15.5 * 0.75,
            "italic": true
        })
    /// Of a to-do that is done.
    readonly property font bodyDone: Qt.font({
            "family": serif,
            "pointSize": 15.5 * 0.75,
            "strikeout": true
        })
    readonly property font spoken: of(serif, 15, Font.Normal)
    readonly property font liveSpoken: of(serif, 22, Font.Normal)
    readonly property font rowTitle: of(sans, 13.5, Font.DemiBold)
    readonly property font ui: of(sans, 13, Font.Normal)
    readonly property font uiStrong: of(sans, 13, Font.DemiBold)
    readonly property font caption: of(sans, 11.5, Font.Normal)
    readonly property font captionStrong: of(sans, 11.5, Font.DemiBold)
    readonly property font eyebrow: Qt.font({
            "family": sans,
            "pointSize": 10.5 * 0.75,
            "weight": Font.DemiBold,
            "letterSpacing": 0.9,
            "capitalization": Font.AllUppercase
        })
    readonly property font stamp: of(mono, 10.5, Font.Normal)
    readonly property font timer: of(mono, 13, Font.Medium)

    /// A font of the system design at a size of its own.
    function system(size: real, weight: int): font {
        return of(sans, size, weight);
    }

    /// The same with digits of one width, for what counts on while one looks at it.
    function tabular(size: real, weight: int): font {
        return of(figures, size, weight);
    }

    function of(family: string, size: real, weight: int): font {
        return Qt.font({
                "family": family,
                "pointSize": size * 0.75,
                "weight": weight
            });
    }
}
