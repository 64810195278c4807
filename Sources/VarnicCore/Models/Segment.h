#pragma once

#include "VarnicCore/Models/Speaker.h"
#include "VarnicCore/Models/Uuid.h"

#include <algorithm>
#include <string>
#include <utility>

namespace varnic {

/// One line of a transcript. Times are seconds from the start of the recording.
struct Segment {
    Uuid id;
    Speaker speaker = Speaker::you;
    double start = 0;
    double end = 0;
    std::string text;

    Segment() = default;

    /// A segment with a fresh id, whose end is never before its start.
    Segment(Speaker who, double from, double to, std::string words)
        : id(Uuid::random()), speaker(who), start(from), end(std::max(from, to)), text(std::move(words)) {}

    [[nodiscard]] double duration() const { return end - start; }

    bool operator==(const Segment&) const = default;
};

} // namespace varnic
