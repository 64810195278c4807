#include "VarnicPlatform/Speech/GuardedDecoding.h"

#include "VarnicCore/Text/Tokens.h"
#include "VarnicPlatform/Speech/TranscriptGuards.h"
#include "VarnicPlatform/Speech/WordTimes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace varnic::GuardedDecoding {

namespace {

/// How often a segment on which the engine lost itself is cut and decoded again.
constexpr int mostCuts = 2;
/// Shorter pieces are not cut.
constexpr double shortestPart = 2;

constexpr int rate = SpeechRecognizer::rate;

/// Cuts a segment in two at a moment.
std::pair<SpeechSegment, SpeechSegment> cutAt(const SpeechSegment& segment, double moment) {
    std::pair halves(segment, segment);
    halves.first.audio.end = halves.second.audio.start = moment;
    halves.first.speech.end = halves.second.speech.start = std::clamp(moment, segment.speech.start, segment.speech.end);
    return halves;
}

/// Leaves out what describes sounds.
void keepWhatWasSaid(Recognition& result) {
    const std::vector<bool> said = TranscriptGuards::saidWords(result.text);
    if (std::ranges::all_of(said, std::identity())) {
        return;
    }
    std::string text;
    std::vector<TimedWord> words;
    std::size_t index = 0;
    for (const auto& [word, isJoined] : Tokens::split(result.text)) {
        if (said[index]) {
            Tokens::append(text, word, isJoined);
            if (!result.words.empty()) {
                words.push_back(result.words[index]);
            }
        }
        ++index;
    }
    result.text = std::move(text);
    result.words = std::move(words);
}

class Decoding {
public:
    Decoding(const TrackLevels& track, const Decode& engine) : track_(track), engine_(engine) {}

    void decode(std::span<const float> samples, const SpeechSegment& part, int cuts) {
        if (samples.empty()) {
            return;
        }
        Recognition result = engine_(samples);
        keepWhatWasSaid(result);
        const double seconds = static_cast<double>(samples.size()) / rate;
        if (result.isCutShort || TranscriptGuards::isSuspicious(result.text, result.tokens, seconds)) {
            if (cuts < mostCuts && seconds >= shortestPart) {
                decodeHalves(samples, part, cuts + 1);
                return;
            }
            std::string text = TranscriptGuards::withoutRepeats(result.text);
            if (text != result.text) {
                result.text = std::move(text);
                // The engine's times are those of the repeats too.
                result.words.clear();
            }
        }
        if (TranscriptGuards::hasLetter(result.text)) {
            keep(std::move(result), part);
        }
    }

    std::vector<TimedWord> take() { return std::move(words_); }

private:
    void decodeHalves(std::span<const float> samples, const SpeechSegment& part, int cuts) {
        const double quarter = static_cast<double>(samples.size()) / rate / 4;
        const double moment = SpeechSegments::quietest({part.audio.start + quarter, part.audio.end - quarter}, track_);
        const auto [front, back] = cutAt(part, moment);
        const auto count = static_cast<std::size_t>(
            std::clamp<std::int64_t>(std::llround((moment - part.audio.start) * rate), 0, std::ssize(samples)));
        decode(samples.first(count), front, cuts);
        decode(samples.subspan(count), back, cuts);
    }

    void keep(Recognition result, const SpeechSegment& part) {
        const std::vector<VoiceActivity::Range> voiced = SpeechSegments::voicedRuns(part.speech, track_);
        if (result.words.empty()) {
            result.words = WordTimes::spread(result.text, voiced);
        } else {
            for (TimedWord& word : result.words) {
                word.start += part.audio.start;
            }
            WordTimes::fit(result.words, voiced);
        }
        words_.insert(words_.end(), result.words.begin(), result.words.end());
    }

    const TrackLevels& track_;
    const Decode& engine_;
    std::vector<TimedWord> words_;
};

} // namespace

std::vector<TimedWord> decode(std::span<const float> samples, const SpeechSegment& segment, const TrackLevels& track,
                              const Decode& engine) {
    Decoding decoding(track, engine);
    decoding.decode(samples, segment, 0);
    return decoding.take();
}

} // namespace varnic::GuardedDecoding
