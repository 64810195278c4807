#pragma once

#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace varnic {

/// Receives the fraction of one file that is done, 0 to 1, on any thread.
using ProgressCallback = std::function<void(double)>;

/// A track to be transcribed.
struct SpokenTrack {
    std::filesystem::path file;
    Speaker speaker = Speaker::you;
    /// The track of a side that the microphone of this one may overhear. Its echo is not to be transcribed.
    std::optional<std::filesystem::path> overheard;
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

    /// Whether it would transcribe a call with a better model than the one, by its id, that wrote the lines while it
    /// ran.
    [[nodiscard]] virtual bool surpasses(const std::string& /*liveModel*/) const { return false; }
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
