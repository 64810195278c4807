#pragma once

#include "VarnicCore/Audio/VoiceActivity.h"

#include <deque>
#include <optional>
#include <span>
#include <vector>

namespace varnic {

/// A part of a track that the engine transcribes in one go. Seconds from the track's beginning.
struct SpeechSegment {
    /// Where somebody speaks, first to last.
    VoiceActivity::Range speech;
    /// What the engine is given: the same with a little of the real audio around it.
    VoiceActivity::Range audio;
    /// The level of the steady noise in the pauses around it in decibels of full scale, once speech is brought to
    /// SpeechSegments::speechLevel.
    float noise = -120;

    bool operator==(const SpeechSegment&) const = default;
};

/// What is known of a track before it is transcribed: a level in decibels for each frame of so many seconds.
struct TrackLevels {
    std::vector<float> levels;
    double frame = VoiceActivity::frameSeconds;

    [[nodiscard]] double seconds() const { return static_cast<double>(levels.size()) * frame; }

    /// The levels of a part, cut to what there is.
    [[nodiscard]] std::span<const float> within(VoiceActivity::Range range) const;
};

/// How much a model likes to hear at once, in seconds.
struct SegmentLimits {
    /// The longest speech of a segment, pauses included.
    double speech = 15;
    /// The longest pause over which speech is joined.
    double pause = 1;
};

/// Pure functions from levels and voice activity to what the engine is to transcribe.
namespace SpeechSegments {

/// The level of speech that the models transcribe best, in decibels of full scale.
inline constexpr float speechLevel = -23;
/// So far below the speech nobody speaks: the detector need not look.
inline constexpr float silenceBelowSpeech = 40;
/// Seconds of real audio on either side of the speech: the engine drops words at hard edges.
inline constexpr double context = 0.3;

/// The parts of a track in which somebody may speak: within 0.7 seconds of what is louder than the track's own noise
/// and than plain silence. `speech` is the level of its speech in decibels.
std::vector<VoiceActivity::Range> audible(const TrackLevels& track, float speech);

/// The mean level over parts of a track, in decibels: that of their mean power.
float meanLevel(const std::vector<VoiceActivity::Range>& parts, const TrackLevels& track);

/// The level of speech that its level alone does not tell from the noise it is spoken in, in decibels: that of the
/// track's loudest tenth. Nothing for a track that is too quiet to hold any.
std::optional<float> levelInNoise(const TrackLevels& track);

/// The level of the steady noise in the pauses of the minute before a moment, in decibels: the median of their frames'
/// levels. `speech` is all speech of that minute. Plain silence is no pause, for no microphone was open then; -120
/// where the pauses together are shorter than a second, as they are among other voices, and where they are filled with
/// music or with voices too faint to be taken for speech.
float pauseLevel(const std::vector<VoiceActivity::Range>& speech, double before, const TrackLevels& track);

/// The runs within a part in which there is a voice, judged by the part's own levels; pauses shorter than 0.15 s are
/// not seen. Never empty for a part with a level.
std::vector<VoiceActivity::Range> voicedRuns(VoiceActivity::Range part, const TrackLevels& track);

/// The middle of the quietest tenth of a second between two moments.
double quietest(VoiceActivity::Range between, const TrackLevels& track);

} // namespace SpeechSegments

/// Makes segments of speech that becomes known bit by bit. Over short pauses speech is joined, and speech that goes on
/// for too long is cut where it is quietest. No two segments share audio.
class SegmentPlanner {
public:
    /// `track` must outlive it.
    SegmentPlanner(const TrackLevels& track, SegmentLimits limits) : track_(track), limits_(limits) {}

    /// More speech, behind what is known already.
    void add(VoiceActivity::Range speech);

    /// No more speech will begin before this moment.
    void advance(double moment) { known_ = moment; }

    /// No more speech will come.
    void finish() { isFinished_ = true; }

    /// The next segment, once what comes behind it is known.
    std::optional<SpeechSegment> next();

    /// The speech that is in no segment yet begins at this moment; nothing where all is.
    [[nodiscard]] std::optional<double> pending() const;

private:
    const TrackLevels& track_;
    SegmentLimits limits_;
    /// The speech of the segments to come; the last one may still grow.
    std::deque<VoiceActivity::Range> speech_;
    /// Where the speech of the last segment ended.
    std::optional<double> given_;
    double known_ = 0;
    bool isFinished_ = false;
};

} // namespace varnic
