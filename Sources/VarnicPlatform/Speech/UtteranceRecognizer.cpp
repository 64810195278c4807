#include "VarnicPlatform/Speech/UtteranceRecognizer.h"

#include "VarnicCore/Text/Tokens.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <utility>

namespace varnic {

namespace {

constexpr std::int64_t frame = LiveVoiceActivity::frame;

/// Whole frames of `seconds`, in samples.
constexpr std::int64_t samplesOf(double seconds) {
    return static_cast<std::int64_t>(seconds * UtteranceRecognizer::rate / frame + 0.5) * frame;
}

/// A pause of so much ends an utterance. One of so much speech ends at the pause that the detector tells of: decoding
/// it to its end takes long on a busy machine, and while its last pause was waited for it was decoded for nothing
/// where the speech went on. With 3 s noisy speech loses words, with 5 s there are no more right than with 4.
constexpr std::int64_t endingPause = samplesOf(0.6);
constexpr std::int64_t settled = samplesOf(4);
constexpr std::int64_t context = samplesOf(SpeechSegments::context);
constexpr std::int64_t hangover = samplesOf(LiveVoiceActivity::hangover);
/// How far before its notice speech may have begun: the detector averages over some of its windows.
constexpr std::int64_t onset = samplesOf(LiveVoiceActivity::onset + 0.1);
/// Longer speech is cut where it is quietest: what is decoded again and again has to stay short.
constexpr std::int64_t longest = samplesOf(10);
/// Kept while nobody speaks.
constexpr std::int64_t kept = onset + context;
/// Silence that is really gone through at a gap: enough for everything open to end.
constexpr std::int64_t longestWalk = samplesOf(1.2);

/// New audio after which the open utterance is decoded again: in seconds, and as a share of what has been decoded, so
/// that all of it together is not decoded more than about five times.
constexpr double quickStep = 0.7;
constexpr double growth = 0.25;
/// The share of the time that decoding unfinished utterances may take on one side.
constexpr double partialShare = 0.15;

double secondsOf(std::int64_t samples) {
    return static_cast<double>(samples) / UtteranceRecognizer::rate;
}

float levelOf(std::span<const float> samples) {
    double squares = 0;
    for (const float sample : samples) {
        squares += static_cast<double>(sample) * static_cast<double>(sample);
    }
    // What is no number counts as silence.
    const double power = std::isfinite(squares) ? squares / static_cast<double>(samples.size()) : 0;
    return static_cast<float>(10 * std::log10(std::max(power, 1e-12)));
}

} // namespace

UtteranceRecognizer::UtteranceRecognizer(LiveVoiceActivity& voice, GuardedDecoding::Decode decode,
                                         SpeechRequest::OnResult report, std::span<const float> before, Clock clock)
    : voice_(voice), decode_(std::move(decode)), report_(std::move(report)), clock_(std::move(clock)),
      first_(-std::ssize(before)), position_(first_) {
    voice_.interrupt();
    add(before);
}

void UtteranceRecognizer::add(std::span<const float> samples) {
    // In small pieces, so that what is kept stays short whatever comes at once.
    while (!samples.empty()) {
        const std::span<const float> piece = samples.first(std::min<std::size_t>(samples.size(), frame));
        audio_.insert(audio_.end(), piece.begin(), piece.end());
        samples = samples.subspan(piece.size());
        if (first_ + std::ssize(audio_) >= position_ + frame) {
            const auto looked = static_cast<std::size_t>(position_ - first_);
            position_ += frame;
            lookAt(std::span(audio_).subspan(looked, frame));
        }
    }
}

void UtteranceRecognizer::skip(std::int64_t samples) {
    static constexpr std::array<float, frame> silence{};
    const std::int64_t walked = std::min(samples, longestWalk);
    for (std::int64_t left = walked; left > 0; left -= frame) {
        add(std::span(silence).first(static_cast<std::size_t>(std::min(left, frame))));
    }
    if (walked < samples) {
        finish();
        const std::int64_t end = first_ + std::ssize(audio_) + samples - walked;
        audio_.clear();
        track_.levels.clear();
        first_ = position_ = end;
    }
}

void UtteranceRecognizer::offerPartial(bool pausing) {
    if (!open_) {
        return;
    }
    const std::int64_t end = audioEnd();
    const std::int64_t known = transcribed_ ? transcribed_->end : speechStart_;
    // In a pause the utterance is decoded at once: if nothing more comes, its final result is there already.
    const bool due = pausing || !speaks_ ? end != known : secondsOf(end - known) >= partialStep();
    if (due) {
        const std::vector<TimedWord>& words = transcribe(end);
        if (!words.empty() || shown_) {
            report(words, false);
        }
    }
}

void UtteranceRecognizer::finish() {
    if (open_) {
        close(audioEnd());
    }
    // Else the detector would find the end of this one in whatever comes next, and that would begin another.
    voice_.interrupt();
    speaks_ = false;
}

void UtteranceRecognizer::lookAt(std::span<const float> samples) {
    const float level = levelOf(samples);
    track_.levels.push_back(level);
    const bool speaks = voice_.add(samples, level);
    if (speaks && !open_) {
        begin();
    }
    if (open_) {
        follow(speaks);
    } else if (position_ - first_ > 2 * kept) {
        forget(position_ - kept);
    }
}

void UtteranceRecognizer::begin() {
    open_ = true;
    shown_ = false;
    transcribed_.reset();
    speechStart_ = std::max(position_ - onset, first_);
    audioStart_ = std::max(speechStart_ - context, first_);
}

void UtteranceRecognizer::follow(bool speaks) {
    if (speaks) {
        speechEnd_ = position_;
    } else if (speaks_) {
        speechEnd_ = std::max(position_ - hangover, speechStart_ + frame);
    }
    speaks_ = speaks;
    const std::int64_t ending = speechEnd_ - speechStart_ >= settled ? hangover : endingPause;
    if (!speaks && position_ - speechEnd_ >= ending) {
        close(audioEnd());
    } else if (position_ - speechStart_ >= longest) {
        cut();
    }
}

/// Ends an utterance that has grown too long where it is quietest in its later half; the rest is the next one.
void UtteranceRecognizer::cut() {
    const VoiceActivity::Range between{fromFirst(speechStart_ + longest / 2), fromFirst(position_ - samplesOf(0.5))};
    const std::int64_t moment = first_ + samplesOf(SpeechSegments::quietest(between, track_));
    const std::int64_t end = std::exchange(speechEnd_, moment);
    close(moment);
    if (end > moment) {
        begin();
        speechStart_ = audioStart_ = moment;
        speechEnd_ = end;
    }
}

void UtteranceRecognizer::close(std::int64_t end) {
    const std::vector<TimedWord> words = transcribe(end);
    open_ = false;
    transcribed_.reset();
    if (!words.empty() || shown_) {
        report(words, true);
    }
    forget(end);
}

/// Lets go of the audio before a position, in whole frames.
void UtteranceRecognizer::forget(std::int64_t before) {
    const std::int64_t frames = std::clamp<std::int64_t>((before - first_) / frame, 0, std::ssize(track_.levels));
    audio_.erase(audio_.begin(), audio_.begin() + frames * frame);
    track_.levels.erase(track_.levels.begin(), track_.levels.begin() + frames);
    first_ += frames * frame;
}

const std::vector<TimedWord>& UtteranceRecognizer::transcribe(std::int64_t end) {
    if (transcribed_ && transcribed_->end == end) {
        return transcribed_->words;
    }
    const double began = clock_();
    std::vector<float> samples(audio_.begin() + (audioStart_ - first_), audio_.begin() + (end - first_));
    std::ranges::for_each(samples, [gain = voice_.gain()](float& sample) { sample *= gain; });
    const SpeechSegment segment{{fromFirst(speechStart_), fromFirst(std::min(speechEnd_, end))},
                                {fromFirst(audioStart_), fromFirst(end)}};
    Transcribed result{.end = end, .words = {}};
    try {
        result.words = GuardedDecoding::decode(samples, segment, track_, decode_);
    } catch (const std::exception&) {
        // The transcript made from the whole track later on does not depend on this one.
        result.words.clear();
    }
    for (TimedWord& word : result.words) {
        word.start += secondsOf(first_);
    }
    cost_ = clock_() - began;
    return transcribed_.emplace(std::move(result)).words;
}

/// Where the audio of the open utterance ends as far as it goes now.
std::int64_t UtteranceRecognizer::audioEnd() const {
    return speaks_ ? position_ : std::min(speechEnd_ + context, position_);
}

double UtteranceRecognizer::partialStep() const {
    const double decoded = transcribed_ ? secondsOf(transcribed_->end - speechStart_) : 0;
    return std::max({quickStep, growth * decoded, cost_ / partialShare});
}

double UtteranceRecognizer::fromFirst(std::int64_t position) const {
    return secondsOf(position - first_);
}

void UtteranceRecognizer::report(const std::vector<TimedWord>& words, bool isFinal) {
    SpeechResult result{.words = words, .formatted = {}, .isFinal = isFinal};
    for (const TimedWord& word : words) {
        Tokens::append(result.formatted, word.text, word.isJoined);
    }
    shown_ = !isFinal;
    report_(result);
}

} // namespace varnic
