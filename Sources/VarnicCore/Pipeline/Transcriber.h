#pragma once

#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"
#include "VarnicCore/Pipeline/Recording.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace varnic {

/// Receives the fraction of one file that is done, 0 to 1, on any thread.
using ProgressCallback = std::function<void(double)>;

/// What is spoken in a call, as language tags; empty where nobody says.
struct SpokenLanguages {
    std::string you;
    std::string them;
    /// That of the side which speaks more.
    std::string call;

    [[nodiscard]] const std::string& of(Speaker speaker) const { return speaker == Speaker::you ? you : them; }

    bool operator==(const SpokenLanguages&) const = default;
};

/// A track to be transcribed.
struct SpokenTrack {
    std::filesystem::path file;
    Speaker speaker = Speaker::you;
    /// The track of a side that the microphone of this one may overhear. Its echo is not to be transcribed.
    std::optional<std::filesystem::path> overheard;
    /// What is spoken on it; empty for what the transcriber takes it to be.
    std::string language;
};

/// What turns a track into lines of text. Safe to call from any thread and concurrently.
class Transcriber {
public:
    Transcriber() = default;
    Transcriber(const Transcriber&) = delete;
    Transcriber& operator=(const Transcriber&) = delete;
    virtual ~Transcriber() = default;

    /// Blocks until the track is transcribed; the segments carry its speaker and are in order of time.
    /// Throws TranscriberError; a request through `stop` ends the work early with `failed`.
    [[nodiscard]] virtual std::vector<Segment> transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                          std::stop_token stop) const = 0;

    /// What is spoken on the tracks of a call. Blocks while that is found out; what can't be is guessed, also after a
    /// request through `stop`.
    [[nodiscard]] virtual SpokenLanguages languages(const CallTracks& /*tracks*/,
                                                    const std::stop_token& /*stop*/) const {
        return {};
    }

    /// Whether it would transcribe a call in these languages with a better model than the one, by its id, that wrote
    /// the lines while it ran.
    [[nodiscard]] virtual bool surpasses(const std::string& /*liveModel*/, const SpokenLanguages& /*spoken*/) const {
        return false;
    }
};

/// Gives lines that are known beforehand, for tests and for flows that run without a speech engine.
class FakeTranscriber final : public Transcriber {
public:
    std::vector<Segment> segments;
    /// Seconds that a transcription takes, slept in four steps.
    double delay = 0;
    std::optional<TranscriberError> failure;

    /// Gives the lines of the asked speaker with fresh ids. Throws `missingFile` when there is no file, else `failure`.
    [[nodiscard]] std::vector<Segment> transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                  std::stop_token stop) const override;
};

} // namespace varnic
