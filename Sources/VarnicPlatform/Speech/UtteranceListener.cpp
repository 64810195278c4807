#include "VarnicPlatform/Speech/UtteranceListener.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <utility>

namespace varnic {

namespace {

constexpr std::int64_t frame = LiveVoice::frame;

/// Whole frames of `seconds`, in samples.
constexpr std::int64_t samplesOf(double seconds) {
    return static_cast<std::int64_t>(seconds * UtteranceListener::rate / frame + 0.5) * frame;
}

/// A pause of so much ends an utterance.
constexpr std::int64_t endingPause = samplesOf(0.6);
constexpr std::int64_t context = samplesOf(SpeechSegments::context);
constexpr std::int64_t hangover = samplesOf(LiveVoice::hangover);
/// How far before its notice speech may have begun: the detector averages over some of its windows.
constexpr std::int64_t onset = samplesOf(LiveVoice::onset + 0.1);
constexpr std::int64_t longest = samplesOf(SpeechSegments::longestSegment);
/// Kept while nobody speaks.
constexpr std::int64_t kept = onset + context;
/// Silence that is really gone through at a gap: enough for everything open to end.
constexpr std::int64_t longestWalk = samplesOf(1.2);

/// Seconds of new sound after which the open utterance is heard again: while it is short, and later.
constexpr double quickStep = 0.7;
constexpr double slowStep = 1.5;
constexpr double shortUtterance = 5;
/// The share of the time that hearing unfinished utterances may take on one side.
constexpr double partialShare = 0.15;

double secondsOf(std::int64_t samples) {
    return static_cast<double>(samples) / UtteranceListener::rate;
}

float levelOf(std::span<const float> samples) {
    double squares = 0;
    for (const float sample : samples) {
        squares += static_cast<double>(sample) * static_cast<double>(sample);
    }
    // What is no number is no sound.
    const double power = std::isfinite(squares) ? squares / static_cast<double>(samples.size()) : 0;
    return static_cast<float>(10 * std::log10(std::max(power, 1e-12)));
}

} // namespace

UtteranceListener::UtteranceListener(LiveVoice& voice, GuardedDecoding::Decode decode, SpeechRequest::OnResult report,
                                     std::span<const float> before, Clock clock)
    : voice_(voice), decode_(std::move(decode)), report_(std::move(report)), clock_(std::move(clock)),
      first_(-std::ssize(before)), position_(first_) {
    voice_.interrupt();
    add(before);
}

void UtteranceListener::add(std::span<const float> samples) {
    // In small pieces, so that what is kept stays short whatever comes at once.
    while (!samples.empty()) {
        const std::span<const float> piece = samples.first(std::min<std::size_t>(samples.size(), frame));
        sound_.insert(sound_.end(), piece.begin(), piece.end());
        samples = samples.subspan(piece.size());
        if (first_ + std::ssize(sound_) >= position_ + frame) {
            const auto looked = static_cast<std::size_t>(position_ - first_);
            position_ += frame;
            lookAt(std::span(sound_).subspan(looked, frame));
        }
    }
}

void UtteranceListener::skip(std::int64_t samples) {
    static constexpr std::array<float, frame> silence{};
    const std::int64_t walked = std::min(samples, longestWalk);
    for (std::int64_t left = walked; left > 0; left -= frame) {
        add(std::span(silence).first(static_cast<std::size_t>(std::min(left, frame))));
    }
    if (walked < samples) {
        finish();
        const std::int64_t end = first_ + std::ssize(sound_) + samples - walked;
        sound_.clear();
        track_.levels.clear();
        first_ = position_ = end;
    }
}

void UtteranceListener::offerPartial(bool pausing) {
    if (!open_) {
        return;
    }
    const std::int64_t end = soundEnd();
    const std::int64_t heard = heard_ ? heard_->end : speechStart_;
    // In a pause the utterance is heard at once: if nothing more comes, its final result is there already.
    const bool due = pausing || !speaks_ ? end != heard : secondsOf(end - heard) >= partialStep();
    if (due) {
        const std::vector<TimedWord>& words = hear(end);
        if (!words.empty() || shown_) {
            report(words, false);
        }
    }
}

void UtteranceListener::finish() {
    if (open_) {
        close(soundEnd());
    }
    // Else the detector would find the end of this one in whatever comes next, and that would begin another.
    voice_.interrupt();
    speaks_ = false;
}

void UtteranceListener::lookAt(std::span<const float> samples) {
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

void UtteranceListener::begin() {
    open_ = true;
    shown_ = false;
    heard_.reset();
    speechStart_ = std::max(position_ - onset, first_);
    soundStart_ = std::max(speechStart_ - context, first_);
}

void UtteranceListener::follow(bool speaks) {
    if (speaks) {
        speechEnd_ = position_;
    } else if (speaks_) {
        speechEnd_ = std::max(position_ - hangover, speechStart_ + frame);
    }
    speaks_ = speaks;
    if (!speaks && position_ - speechEnd_ >= endingPause) {
        close(soundEnd());
    } else if (position_ - speechStart_ >= longest) {
        cut();
    }
}

/// Ends an utterance that has grown too long where it is quietest in its later half; the rest is the next one.
void UtteranceListener::cut() {
    const VoiceActivity::Range between{fromFirst(speechStart_ + longest / 2), fromFirst(position_ - samplesOf(0.5))};
    const std::int64_t moment = first_ + samplesOf(SpeechSegments::quietest(between, track_));
    const std::int64_t end = std::exchange(speechEnd_, moment);
    close(moment);
    if (end > moment) {
        begin();
        speechStart_ = soundStart_ = moment;
        speechEnd_ = end;
    }
}

void UtteranceListener::close(std::int64_t end) {
    const std::vector<TimedWord> words = hear(end);
    open_ = false;
    heard_.reset();
    if (!words.empty() || shown_) {
        report(words, true);
    }
    forget(end);
}

/// Lets go of the sound before a position, in whole frames.
void UtteranceListener::forget(std::int64_t before) {
    const std::int64_t frames = std::clamp<std::int64_t>((before - first_) / frame, 0, std::ssize(track_.levels));
    sound_.erase(sound_.begin(), sound_.begin() + frames * frame);
    track_.levels.erase(track_.levels.begin(), track_.levels.begin() + frames);
    first_ += frames * frame;
}

const std::vector<TimedWord>& UtteranceListener::hear(std::int64_t end) {
    if (heard_ && heard_->end == end) {
        return heard_->words;
    }
    const double began = clock_();
    std::vector<float> samples(sound_.begin() + (soundStart_ - first_), sound_.begin() + (end - first_));
    std::ranges::for_each(samples, [gain = voice_.gain()](float& sample) { sample *= gain; });
    const SpeechSegment segment{{fromFirst(speechStart_), fromFirst(std::min(speechEnd_, end))},
                                {fromFirst(soundStart_), fromFirst(end)}};
    Heard heard{.end = end, .words = {}};
    try {
        heard.words = GuardedDecoding::decode(samples, segment, track_, decode_);
    } catch (const std::exception&) {
        // The transcript made from the whole track later on does not depend on this one.
        heard.words.clear();
    }
    for (TimedWord& word : heard.words) {
        word.start += secondsOf(first_);
    }
    cost_ = clock_() - began;
    return heard_.emplace(std::move(heard)).words;
}

/// Where the sound of the open utterance ends as far as it goes now.
std::int64_t UtteranceListener::soundEnd() const {
    return speaks_ ? position_ : std::min(speechEnd_ + context, position_);
}

double UtteranceListener::partialStep() const {
    const bool isShort = secondsOf(position_ - speechStart_) <= shortUtterance;
    return std::max(isShort ? quickStep : slowStep, cost_ / partialShare);
}

double UtteranceListener::fromFirst(std::int64_t position) const {
    return secondsOf(position - first_);
}

void UtteranceListener::report(const std::vector<TimedWord>& words, bool isFinal) {
    SpeechResult result{.words = words, .formatted = {}, .isFinal = isFinal};
    for (const TimedWord& word : words) {
        result.formatted += result.formatted.empty() ? word.text : " " + word.text;
    }
    shown_ = !isFinal;
    report_(result);
}

} // namespace varnic
