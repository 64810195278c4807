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
    /// The moment `by` later (or earlier, below 0), within the call.
    Q_INVOKABLE double step(double time, double by) const;

    bool operator==(const CallInk& other) const = default;

private:
    double duration_ = 0;
    std::shared_ptr<const std::vector<Segment>> segments_;
};

} // namespace varnic
