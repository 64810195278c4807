#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"
#include "VarnicCore/Audio/SampleConverter.h"
#include "VarnicCore/Audio/SoundFile.h"
#include "VarnicCore/Models/Speaker.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace varnic {

/// How loud a piece of audio is: 0 is -52 dB of full scale or less, 1 is -8 dB or more.
float soundLevel(const PcmBuffer& buffer);

/// Turns one side's buffers, in whatever form they come, into a track: one channel at 48 kHz, each buffer where its
/// time stamp says. The file is for its owner only and playable at every moment. One thread at a time.
///
/// Where the disk is full or the file's folder gone, `append`, `writeSilence` and `pad` throw LibraryError. The buffer
/// is then left out and not counted, so that the stamp of the first one that can be written again makes up for it.
class TrackWriter {
public:
    /// In place of what is at `url`. Compressed is AAC of 64 kbit/s in MP4, else 32-bit float samples: WAV by that
    /// extension, else CAF. Throws LibraryError.
    TrackWriter(std::filesystem::path url, Speaker speaker, bool compressed);

    /// Closes the file; what cannot be written then is lost.
    ~TrackWriter();

    TrackWriter(const TrackWriter&) = delete;
    TrackWriter& operator=(const TrackWriter&) = delete;

    /// Adds a buffer whose first sample belongs at `at` seconds. What is missing before it becomes silence when it is
    /// more than 0.05 seconds; one that comes early runs on, as does one without a stamp. Throws LibraryError, and
    /// TranscriberError `failed` for a form that nothing converts.
    void append(const PcmBuffer& buffer, std::optional<double> at);

    /// Adds so many seconds of silence, nothing for less than 0. Throws LibraryError.
    void writeSilence(double seconds);

    /// Adds silence up to `target` seconds from the beginning. Throws LibraryError.
    void pad(double target);

    /// Completes the file: an ordinary one, seekable, of the exact length. Nothing may be added behind it. May be
    /// called again. Throws LibraryError when not all of the audio could be written.
    void close();

    [[nodiscard]] double seconds() const { return static_cast<double>(framesWritten_) / TrackFormat::sampleRate; }

    [[nodiscard]] std::int64_t framesWritten() const { return framesWritten_; }

    /// The level of the last buffer, and the highest one so far; 0 to 1.
    [[nodiscard]] float level() const { return level_; }

    [[nodiscard]] float peak() const { return peak_; }

    [[nodiscard]] const std::filesystem::path& url() const { return url_; }

    [[nodiscard]] Speaker speaker() const { return speaker_; }

private:
    PcmBuffer convert(const PcmBuffer& buffer);
    void drainConverter();
    void writeSilentFrames(std::size_t frames);
    void write(const PcmBuffer& sound);

    std::filesystem::path url_;
    Speaker speaker_;
    std::unique_ptr<SoundFile> file_;
    /// For buffers of the form `converterInput_`.
    std::optional<SampleConverter> converter_;
    AudioFormat converterInput_;
    std::int64_t framesWritten_ = 0;
    float level_ = 0;
    float peak_ = 0;
};

} // namespace varnic
