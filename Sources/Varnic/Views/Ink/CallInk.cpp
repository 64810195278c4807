#include "Varnic/Views/Ink/CallInk.h"

#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Transcript/Diarisation.h"

#include <algorithm>
#include <iterator>

namespace varnic {

CallInk::CallInk(const CallRecord& call)
    : duration_(call.duration), segments_(std::make_shared<const std::vector<Segment>>(call.segments)),
      turns_(std::make_shared<const std::vector<Segment>>(Diarisation::turns(call.segments, Diarisation::turnGap))) {
    if (duration_ <= 0) {
        duration_ = call.segments.empty() ? 0 : call.segments.back().end;
    }
}

std::vector<InkPen::Levels> CallInk::levels(int slices) const {
    /// Somebody who speaks through a whole slice swings this far.
    constexpr double fullLevel = 0.85;
    std::vector<InkPen::Levels> result;
    if (segments_) {
        std::ranges::transform(Diarisation::activity(*segments_, duration_, slices), std::back_inserter(result),
                               [](const Diarisation::Activity& slice) {
                                   return InkPen::Levels{slice.you * fullLevel, slice.them * fullLevel};
                               });
    }
    return result;
}

double CallInk::timeAt(double x, double width) const {
    return width > 0 ? std::clamp(x / width, 0.0, 1.0) * duration_ : 0;
}

double CallInk::xOf(double time, double width) const {
    return duration_ > 0 ? std::clamp(time / duration_, 0.0, 1.0) * width : 0;
}

QString CallInk::stamp(double time) {
    return QString::fromStdString(Clock::stamp(time));
}

const Segment* CallInk::turnAt(double time) const {
    if (!turns_) {
        return nullptr;
    }
    const Segment* heard = nullptr;
    for (const Segment& turn : *turns_) {
        if (turn.start <= time && time < turn.end + Diarisation::turnAfterglow) {
            heard = &turn;
        }
    }
    return heard;
}

QString CallInk::wordsAt(double time) const {
    /// Bytes that are surely more than a label shows.
    constexpr std::size_t enough = 120;
    const Segment* const turn = turnAt(time);
    if (turn == nullptr) {
        return {};
    }
    const std::string words = turn->text.substr(Diarisation::placeIn(*turn, *segments_, time));
    return QString::fromStdString(words.substr(0, words.find(' ', std::min(enough, words.size()))));
}

bool CallInk::isYoursAt(double time) const {
    const Segment* const turn = turnAt(time);
    return turn != nullptr && turn->speaker == Speaker::you;
}

double CallInk::step(double time, double by) const {
    return std::clamp(time + by, 0.0, duration_);
}

} // namespace varnic
