#include "VarnicCore/Pipeline/CallProcessor.h"

#include "VarnicCore/Audio/EchoFreeReader.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Transcript/Diarisation.h"
#include "VarnicCore/Transcript/OverheardLines.h"

#include <algorithm>
#include <exception>
#include <future>
#include <iterator>
#include <mutex>
#include <utility>

namespace varnic {

namespace {

/// In how many places of a call an echo is sought: enough for one that came in its midst, and no more than seconds of
/// work.
constexpr std::size_t momentsLookedAt = 8;

std::vector<Segment> linesOf(const std::vector<Segment>& segments, Speaker speaker) {
    std::vector<Segment> lines;
    std::ranges::copy_if(segments, std::back_inserter(lines),
                         [speaker](const Segment& line) { return line.speaker == speaker; });
    return lines;
}

void requireGoingOn(const std::stop_token& stop) {
    if (stop.stop_requested()) {
        throw TranscriberError::failed("cancelled");
    }
}

/// Both sides' lines as one transcript without those that are only echo.
std::vector<Segment> transcript(const std::vector<Segment>& you, const std::vector<Segment>& them,
                                const CallTracks& tracks, const std::stop_token& stop) {
    std::vector<Segment> segments = Diarisation::merge(you, them);
    if (!tracks.you || !tracks.them) {
        return segments;
    }
    try {
        return OverheardLines::remove(segments, *tracks.you, *tracks.them, [&stop] { requireGoingOn(stop); });
    } catch (const std::exception&) {
        return segments; // a line too many is better than none
    }
}

/// Whether the far end's echo was in the microphone while both spoke: what was said over an echo is garbled in live
/// lines.
bool isSpoiledByEcho(const std::vector<Segment>& live, const CallTracks& tracks, const std::stop_token& stop) {
    std::vector<double> moments;
    for (const Segment& line : live) {
        const bool isSpokenOver =
            line.speaker == Speaker::you && std::ranges::any_of(live, [&line](const Segment& other) {
                return other.speaker == Speaker::them && other.start < line.end && line.start < other.end;
            });
        if (isSpokenOver) {
            moments.push_back(line.start);
        }
    }
    if (!tracks.you || !tracks.them) {
        return false;
    }
    try {
        const std::size_t step = moments.size() / momentsLookedAt + 1;
        for (std::size_t i = 0; i < moments.size(); i += step) {
            if (EchoFreeReader::hasEcho(*tracks.you, *tracks.them, moments[i], [&stop] { requireGoingOn(stop); })) {
                return true;
            }
        }
    } catch (const std::exception&) {
        // What cannot be read gives no better transcript; what was not looked at any more may.
        return stop.stop_requested();
    }
    return false;
}

/// Keeps the failure that stopped both transcriptions; the one that it stopped fails too, but only as a consequence.
class FirstFailure {
public:
    void keep(std::exception_ptr failure) {
        const std::lock_guard guard(lock_);
        if (!first_) {
            first_ = std::move(failure);
        }
    }

    /// Call it when both transcriptions have ended.
    void rethrow() const {
        if (first_) {
            std::rethrow_exception(first_);
        }
    }

private:
    std::mutex lock_;
    std::exception_ptr first_;
};

} // namespace

CallProcessor::CallProcessor(std::shared_ptr<const Transcriber> speechWriter,
                             std::shared_ptr<const Summariser> digestMaker, Region userRegion)
    : transcriber(std::move(speechWriter)), summariser(std::move(digestMaker)), region(std::move(userRegion)) {}

WrittenCall CallProcessor::process(const Recording& recording, const DigestContext& context,
                                   const StageCallback& progress, const std::stop_token& stop) const {
    CallRecord call = recording.record();
    const bool hasLive = recording.live && !recording.live->empty();
    const SpokenLanguages spoken = transcriber->languages(recording.tracks, stop);
    const bool isLiveEnough = hasLive && !isOutdone(recording, spoken, stop);
    if (!isLiveEnough) {
        progress(ProcessingStage::transcribing(0));
        try {
            const Sides sides = transcribeBoth(
                recording.tracks, spoken, [&](double overall) { progress(ProcessingStage::transcribing(overall)); },
                stop);
            call.segments = transcript(sides.you, sides.them, recording.tracks, stop);
        } catch (const std::exception& error) {
            call.problem = error.what();
        }
    }
    const bool takesLive = hasLive && call.segments.empty();
    if (takesLive) {
        call.problem.reset();
        call.segments = transcript(linesOf(*recording.live, Speaker::you), linesOf(*recording.live, Speaker::them),
                                   recording.tracks, stop);
    } else if (!spoken.call.empty()) {
        call.language = spoken.call;
    }
    call.themName = context.themName;
    if (call.segments.empty() && !call.problem) {
        call.problem = nobodyHeard;
    }
    call.problem = CallProblem::joined(call.problem, recording.loss);
    progress(ProcessingStage::summarising());
    call.digest = tryDigest(call.segments, context, call.language, stop);
    const std::optional<CallDigest> digest = call.digest;
    Note note = NoteEditor::callNote(recording.noteID, std::move(call), digest, region, currentDate());
    progress(ProcessingStage::done());
    return {std::move(note), takesLive && !isLiveEnough};
}

Note CallProcessor::retranscribe(const Note& note, const CallTracks& tracks, const DigestContext& context,
                                 const std::stop_token& stop) const {
    Note copy = note;
    const SpokenLanguages spoken = transcriber->languages(tracks, stop);
    const Sides sides = transcribeBoth(tracks, spoken, [](double /*overall*/) {}, stop);
    const std::vector<Segment> segments = transcript(sides.you, sides.them, tracks, stop);
    if (copy.call) {
        copy.call->segments = segments;
        copy.call->language = spoken.call.empty() ? copy.call->language : spoken.call;
        copy.call->problem =
            CallProblem::joined(segments.empty() ? std::optional<std::string>(nobodyHeard) : std::nullopt,
                                CallProblem::lossIn(copy.call->problem));
    }
    const std::string language = copy.call ? copy.call->language : context.language;
    if (const auto digest = tryDigest(segments, context, language, stop)) {
        NoteEditor::apply(*digest, copy, false, currentDate());
    }
    return copy;
}

/// Whether the tracks tell more than the lines that were written while the call ran.
bool CallProcessor::isOutdone(const Recording& recording, const SpokenLanguages& spoken,
                              const std::stop_token& stop) const {
    const std::vector<Speaker> sides = recording.tracks.speakers();
    if (sides.empty()) {
        return false;
    }
    const auto isInAnother = [&](Speaker side) {
        return !recording.liveLanguage.empty() && !spoken.of(side).empty() &&
               !Language::isSame(recording.liveLanguage, spoken.of(side));
    };
    return recording.isLiveBehind || std::ranges::any_of(sides, isInAnother) ||
           transcriber->surpasses(recording.liveModel, spoken) ||
           isSpoiledByEcho(*recording.live, recording.tracks, stop);
}

CallProcessor::Sides CallProcessor::transcribeBoth(const CallTracks& tracks, const SpokenLanguages& spoken,
                                                   const std::function<void(double)>& overall,
                                                   const std::stop_token& stop) const {
    ProgressBox box(tracks.speakers().size());
    std::stop_source both;
    const std::stop_callback passOn(stop, [&both] { both.request_stop(); });
    FirstFailure failure;
    const auto start = [&](const std::optional<std::filesystem::path>& file, Speaker speaker,
                           const std::optional<std::filesystem::path>& overheard) {
        return std::async(std::launch::async, [&, file, speaker, overheard]() -> std::vector<Segment> {
            if (!file) {
                return {};
            }
            try {
                return transcriber->transcribe(
                    {*file, speaker, overheard, spoken.of(speaker)},
                    [&](double value) { overall(box.update(speaker, value)); }, both.get_token());
            } catch (...) {
                failure.keep(std::current_exception());
                both.request_stop();
                return {};
            }
        });
    };
    auto you = start(tracks.you, Speaker::you, tracks.them);
    auto them = start(tracks.them, Speaker::them, std::nullopt);
    Sides sides{you.get(), them.get()};
    failure.rethrow();
    return sides;
}

std::optional<CallDigest> CallProcessor::tryDigest(const std::vector<Segment>& segments, DigestContext context,
                                                   const std::string& language, const std::stop_token& stop) const {
    if (segments.empty()) {
        return std::nullopt;
    }
    try {
        context.language = language;
        return summariser->digest(segments, context, stop);
    } catch (const std::exception&) {
        return std::nullopt; // the transcript is worth keeping without a digest
    }
}

} // namespace varnic
