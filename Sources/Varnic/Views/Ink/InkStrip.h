#pragma once

#include "Varnic/Views/Ink/InkHistory.h"
#include "Varnic/Views/Ink/InkPainting.h"

#include <QImage>

class QPainter;

namespace varnic {

/// A strip of the paper on which a call is being written. The pen only ever adds to it: what moves is the place from
/// which it is looked at. Lengths are points; x counts from where the line began.
class InkStrip {
public:
    /// From one sample to the next.
    static constexpr double step = 2.6;

    struct Setting {
        /// What can be seen of the paper at once.
        double width = 0;
        double height = 0;
        double amplitude = 0;
        /// Device pixels a point.
        double scale = 1;
        InkColors colors;

        bool operator==(const Setting&) const = default;
    };

    /// Writes what the history has and the strip hasn't. Another setting or another line begins a new strip.
    void write(const InkHistory& history, const Setting& setting);

    /// Paints the paper from `left` on at the painter's origin, with its old end fading.
    void paint(QPainter& painter, double left) const;

    /// How a line lies on paper of these measures.
    static InkPen::Line line(const Setting& setting);

private:
    void begin(std::int64_t sample);
    void moveTo(double left);

    Setting setting_;
    QImage image_;
    /// The x of the image's left edge.
    double origin_ = 0;
    int line_ = -1;
    /// The last sample that is written.
    std::int64_t written_ = -1;
};

} // namespace varnic
