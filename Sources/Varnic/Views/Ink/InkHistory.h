#pragma once

#include "Varnic/Recording/LevelBox.h"
#include "VarnicCore/Ink/InkPen.h"

#include <QObject>
#include <QtQmlIntegration>

#include <cstdint>
#include <deque>
#include <vector>

namespace varnic {

/// How loud a running call was, as its line of ink remembers it: the last minute, 20 samples a second. Samples are
/// counted from the start of the line, also those that are forgotten, so that the line stays in place on its paper.
/// Main thread.
class InkHistory : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the running call")

public:
    using QObject::QObject;

    /// Begins another line with these samples.
    void begin(const std::vector<InkSample>& samples);
    void append(InkSample sample);

    /// Counts the lines begun.
    [[nodiscard]] int line() const { return line_; }

    /// The first sample that is remembered, and the one after the last.
    [[nodiscard]] std::int64_t first() const { return first_; }

    [[nodiscard]] std::int64_t end() const { return first_ + static_cast<std::int64_t>(samples_.size()); }

    /// A sample from `first` up to `end`.
    [[nodiscard]] InkPen::Levels at(std::int64_t index) const;

    /// The latest sample; silence where there is none.
    [[nodiscard]] InkPen::Levels latest() const;

Q_SIGNALS:
    void changed();

private:
    std::deque<InkSample> samples_;
    std::int64_t first_ = 0;
    int line_ = 0;
};

} // namespace varnic
