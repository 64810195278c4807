#include "Varnic/Views/Ink/InkStrip.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace varnic {

namespace {

/// How far the ink of a sample reaches to either side: a loop, and half of the thickest line.
constexpr double reach = 3 * InkStrip::step;

} // namespace

InkPen::Line InkStrip::line(const Setting& setting) {
    return {.step = step, .startX = 0, .phase = 0, .mid = setting.height / 2, .amplitude = setting.amplitude};
}

void InkStrip::write(const InkHistory& history, const Setting& setting) {
    const auto seen = static_cast<std::int64_t>(std::ceil((setting.width + reach) / step)) + 1;
    const std::int64_t first = std::max(history.first(), history.end() - seen);
    if (setting != setting_ || history.line() != line_ || written_ < first) {
        setting_ = setting;
        line_ = history.line();
        begin(first);
    }
    const std::int64_t last = history.end() - 1;
    if (written_ >= last) {
        return;
    }
    if (static_cast<double>(last) * step + reach > origin_ + image_.deviceIndependentSize().width()) {
        moveTo(static_cast<double>(first) * step - reach);
    }
    QPainter painter(&image_);
    prepareForInk(painter);
    painter.translate(-origin_, 0);
    for (; written_ < last; ++written_) {
        stroke(painter, InkPen::piece(written_ + 1, history.at(written_), history.at(written_ + 1), line(setting)),
               setting.colors);
    }
}

void InkStrip::begin(std::int64_t sample) {
    // Room for as much again as can be seen: the ink has to be moved only when a whole width has been written.
    const double width = 2 * (setting_.width + 2 * reach);
    image_ = QImage(static_cast<int>(std::ceil(width * setting_.scale)),
                    static_cast<int>(std::ceil(setting_.height * setting_.scale)), QImage::Format_ARGB32_Premultiplied);
    image_.setDevicePixelRatio(setting_.scale);
    image_.fill(Qt::transparent);
    origin_ = static_cast<double>(sample) * step - reach;
    written_ = sample;
}

void InkStrip::moveTo(double left) {
    // By whole pixels, so that the ink stays as sharp as it was.
    const int pixels = static_cast<int>(std::floor((left - origin_) * setting_.scale));
    QImage moved(image_.size(), image_.format());
    moved.setDevicePixelRatio(setting_.scale);
    moved.fill(Qt::transparent);
    QPainter(&moved).drawImage(QPointF(-pixels / setting_.scale, 0), image_);
    image_ = std::move(moved);
    origin_ += pixels / setting_.scale;
}

void InkStrip::paint(QPainter& painter, double left) const {
    if (image_.isNull()) {
        return;
    }
    // In whole pixels: a strip that is looked at from between two pixels would be blurred.
    const double pixels = std::round((origin_ - left) * setting_.scale);
    painter.drawImage(QPointF(pixels / setting_.scale, 0), image_);
    QLinearGradient fading(0, 0, setting_.width, 0);
    constexpr double oldest = 0.12;
    constexpr double slope = 1.6;
    const QColor faint = QColor::fromRgbF(0, 0, 0, static_cast<float>(oldest));
    fading.setColorAt(0, faint);
    fading.setColorAt(oldest / slope, faint);
    fading.setColorAt(1 / slope, Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRectF(0, 0, setting_.width / slope, setting_.height), fading);
}

} // namespace varnic
