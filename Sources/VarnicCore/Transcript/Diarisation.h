#pragma once

#include "VarnicCore/Models/Segment.h"

#include <cstddef>
#include <vector>

/// The two sides of a call as one transcript, and views of it. Times in seconds. Pure.
namespace varnic::Diarisation {

/// Whether your line overlaps theirs for over 40 % of the shorter, as one does that the microphone overheard.
bool overlapsAsEcho(const Segment& you, const Segment& them);

/// Joins the two sides in order of their starts, and drops from your side what the microphone merely overheard of the
/// other party: a line that overlaps one of theirs as an echo does and whose text is at least `echoThreshold` (0 to 1)
/// similar to it. Blank lines are dropped too.
std::vector<Segment> merge(const std::vector<Segment>& you, const std::vector<Segment>& them,
                           double echoThreshold = 0.5);

/// Lines of a speaker no further apart than this, in seconds, are shown as one turn.
inline constexpr double turnGap = 2;
/// A turn counts as being heard for this long after its end, in seconds.
inline constexpr double turnAfterglow = 0.5;

/// Neighbouring lines of one speaker, no more than `gap` seconds apart, as one. Keeps the order and the first id.
std::vector<Segment> turns(const std::vector<Segment>& segments, double gap);

/// How many bytes of a turn's text come before what is being said at a moment. `turn` is one of those that `turns` made
/// of `segments`.
std::size_t placeIn(const Segment& turn, const std::vector<Segment>& segments, double time);

/// How much each side speaks in one slice of a call, each 0 to 1.
struct Activity {
    double you = 0;
    double them = 0;

    bool operator==(const Activity&) const = default;
};

/// The activity in `buckets` equal slices of a call of `duration` seconds; empty when either is not above 0.
std::vector<Activity> activity(const std::vector<Segment>& segments, double duration, int buckets);

} // namespace varnic::Diarisation
