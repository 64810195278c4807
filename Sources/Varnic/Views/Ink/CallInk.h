#pragma once

#include "VarnicCore/Ink/InkPen.h"
#include "VarnicCore/Models/Call.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include <memory>
#include <vector>

namespace varnic {

/// A finished call as its ink shows it: who spoke when. A value that is cheap to copy. Times are seconds.
class CallInk {
    Q_GADGET
    QML_VALUE_TYPE(callInk)
    /// The length of the call, or the end of its last line where that isn't known; 0 for a call of no length.
    Q_PROPERTY(double duration READ duration CONSTANT)

public:
    CallInk() = default;
    explicit CallInk(const CallRecord& call);

    [[nodiscard]] double duration() const { return duration_; }

    /// The levels of as many equal slices of the call.
    [[nodiscard]] std::vector<InkPen::Levels> levels(int slices) const;

    /// The moment that lies at `x` on a timeline of this width, within the call.
    Q_INVOKABLE double timeAt(double x, double width) const;
    /// Where a moment lies on a timeline of this width.
    Q_INVOKABLE double xOf(double time, double width) const;
    /// A moment as the transcript writes it.
    Q_INVOKABLE static QString stamp(double time);
    /// The words from a moment on of the turn that is heard then, the last begun if there are two; empty where nobody
    /// speaks.
    Q_INVOKABLE QString wordsAt(double time) const;
    /// Whether that turn is yours.
    Q_INVOKABLE bool isYoursAt(double time) const;
    /// The moment `by` later (or earlier, below 0), within the call.
    Q_INVOKABLE double step(double time, double by) const;

    bool operator==(const CallInk& other) const = default;

private:
    [[nodiscard]] const Segment* turnAt(double time) const;

    double duration_ = 0;
    std::shared_ptr<const std::vector<Segment>> segments_;
    std::shared_ptr<const std::vector<Segment>> turns_;
};

} // namespace varnic
