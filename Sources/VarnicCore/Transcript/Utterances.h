#pragma once

#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"

#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// A word as the speech engine gives it. Times in seconds.
struct TimedWord {
    std::string text;
    double start = 0;
    double duration = 0;
    /// Whether it is written without a blank behind the word before it.
    bool isJoined = false;

    [[nodiscard]] double end() const { return start + duration; }

    bool operator==(const TimedWord&) const = default;
};

namespace Utterances {

/// One track's timed words as lines of a sentence or a few. `formatted` is the engine's punctuated text of the same
/// speech, whose tokens take the words' times in order. `offset` (seconds) is added to all times; a pause of more than
/// `gap` seconds ends a line. Pure.
std::vector<Segment> build(const std::vector<TimedWord>& words, const std::optional<std::string>& formatted,
                           Speaker speaker, double offset, double gap);

} // namespace Utterances
} // namespace varnic
