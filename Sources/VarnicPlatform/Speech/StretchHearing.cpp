#include "VarnicPlatform/Speech/StretchHearing.h"

#include "VarnicPlatform/Speech/TranscriptGuards.h"
#include "VarnicPlatform/Speech/WordTimes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace varnic::StretchHearing {

namespace {

/// How often a stretch on which the engine lost itself is cut and heard again.
constexpr int mostCuts = 2;
/// Shorter pieces are not cut.
constexpr double shortestPart = 2;

constexpr int rate = SpeechRecognizer::rate;

/// Cuts a stretch in two at a moment.
std::pair<SpeechStretch, SpeechStretch> cutAt(const SpeechStretch& stretch, double moment) {
    const auto& [speech, sound] = stretch;
    return {{{speech.start, std::clamp(moment, speech.start, speech.end)}, {sound.start, moment}},
            {{std::clamp(moment, speech.start, speech.end), speech.end}, {moment, sound.end}}};
}

class Hearing {
public:
    Hearing(const TrackLevels& track, const Decode& decode) : track_(track), decode_(decode) {}

    void hear(std::span<const float> samples, const SpeechStretch& part, int cuts) {
        if (samples.empty()) {
            return;
        }
        Recognition heard = decode_(samples);
        const double seconds = static_cast<double>(samples.size()) / rate;
        if (TranscriptGuards::isSuspicious(heard.text, heard.tokens, seconds)) {
            if (cuts < mostCuts && seconds >= shortestPart) {
                hearHalves(samples, part, cuts + 1);
                return;
            }
            heard.text = TranscriptGuards::withoutRepeats(heard.text);
            // The engine's times are those of the repeats too.
            heard.words.clear();
        }
        if (TranscriptGuards::hasLetter(heard.text)) {
            keep(std::move(heard), part);
        }
    }

    std::vector<TimedWord> take() { return std::move(words_); }

private:
    void hearHalves(std::span<const float> samples, const SpeechStretch& part, int cuts) {
        const double quarter = static_cast<double>(samples.size()) / rate / 4;
        const double moment = SpeechStretches::quietest({part.sound.start + quarter, part.sound.end - quarter}, track_);
        const auto [front, back] = cutAt(part, moment);
        const auto count = static_cast<std::size_t>(
            std::clamp<std::int64_t>(std::llround((moment - part.sound.start) * rate), 0, std::ssize(samples)));
        hear(samples.first(count), front, cuts);
        hear(samples.subspan(count), back, cuts);
    }

    void keep(Recognition heard, const SpeechStretch& part) {
        if (heard.words.empty()) {
            heard.words = WordTimes::spread(heard.text, SpeechStretches::voicedRuns(part.speech, track_));
        } else {
            for (TimedWord& word : heard.words) {
                word.start += part.sound.start;
            }
        }
        words_.insert(words_.end(), heard.words.begin(), heard.words.end());
    }

    const TrackLevels& track_;
    const Decode& decode_;
    std::vector<TimedWord> words_;
};

} // namespace

std::vector<TimedWord> hear(std::span<const float> samples, const SpeechStretch& stretch, const TrackLevels& track,
                            const Decode& decode) {
    Hearing hearing(track, decode);
    hearing.hear(samples, stretch, 0);
    return hearing.take();
}

} // namespace varnic::StretchHearing
