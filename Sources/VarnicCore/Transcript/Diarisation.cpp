#include "VarnicCore/Transcript/Diarisation.h"

#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <iterator>

namespace varnic::Diarisation {

namespace {

/// The part of the shorter line that an echo overlaps at least.
constexpr double echoOverlap = 0.4;
/// A line counts as at least this long (seconds) when overlaps are compared.
constexpr double shortestLine = 0.01;

bool isEcho(const Segment& line, const std::vector<Segment>& them, double threshold) {
    return std::ranges::any_of(them, [&](const Segment& heard) {
        return overlapsAsEcho(line, heard) && TextKit::similarity(line.text, heard.text) >= threshold;
    });
}

} // namespace

bool overlapsAsEcho(const Segment& you, const Segment& them) {
    const double overlap = std::max(0.0, std::min(you.end, them.end) - std::max(you.start, them.start));
    const double shorter = std::min(you.duration(), std::max(them.duration(), shortestLine));
    return overlap > echoOverlap * shorter;
}

std::vector<Segment> merge(const std::vector<Segment>& you, const std::vector<Segment>& them, double echoThreshold) {
    std::vector<Segment> merged;
    std::ranges::copy_if(you, std::back_inserter(merged),
                         [&](const Segment& line) { return !isEcho(line, them, echoThreshold); });
    merged.insert(merged.end(), them.begin(), them.end());
    std::erase_if(merged, [](const Segment& line) { return Unicode::trim(line.text).empty(); });
    std::ranges::stable_sort(merged, {}, &Segment::start);
    return merged;
}

std::vector<Segment> turns(const std::vector<Segment>& segments, double gap) {
    std::vector<Segment> result;
    for (const Segment& segment : segments) {
        if (!result.empty() && result.back().speaker == segment.speaker && segment.start - result.back().end <= gap) {
            result.back().text += ' ' + segment.text;
            result.back().end = std::max(result.back().end, segment.end);
        } else {
            result.push_back(segment);
        }
    }
    return result;
}

std::size_t placeIn(const Segment& turn, const std::vector<Segment>& segments, double time) {
    std::size_t place = 0;
    auto said = std::ranges::find(segments, turn.id, &Segment::id);
    while (said != segments.end()) {
        const std::size_t next = place + said->text.size() + 1; // with the blank between two
        ++said;
        if (next >= turn.text.size() || said == segments.end() || said->start > time) {
            break;
        }
        place = next;
    }
    return place;
}

std::vector<Activity> activity(const std::vector<Segment>& segments, double duration, int buckets) {
    const double width = buckets < 1 ? 0 : duration / buckets;
    if (!(width > 0)) { // also where a tiny duration leaves no width
        return {};
    }
    std::vector<Activity> slices(static_cast<std::size_t>(buckets));
    for (const Segment& segment : segments) {
        // Compared as doubles first: a time far outside the call does not fit an integer.
        const auto first = static_cast<int>(std::clamp(segment.start / width, 0.0, static_cast<double>(buckets)));
        const auto last = static_cast<int>(std::clamp(segment.end / width, -1.0, static_cast<double>(buckets - 1)));
        for (int k = first; k <= last; ++k) {
            const double low = width * k;
            const double overlap = std::max(0.0, std::min(segment.end, low + width) - std::max(segment.start, low));
            Activity& slice = slices[static_cast<std::size_t>(k)];
            double& share = segment.speaker == Speaker::you ? slice.you : slice.them;
            share = std::min(1.0, share + overlap / width);
        }
    }
    return slices;
}

} // namespace varnic::Diarisation
