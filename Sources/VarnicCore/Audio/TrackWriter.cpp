#include "VarnicCore/Audio/TrackWriter.h"

#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Files/LibraryError.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

namespace varnic {

namespace {

constexpr double longestGapLeftAlone = 0.05;
constexpr std::size_t chunkFrames = 48'000;
/// About a day: a longer gap is no gap but a wrong stamp.
constexpr double mostSilentFrames = std::numeric_limits<std::uint32_t>::max();

std::string describe(AudioFormat format) {
    return fmt::format("{} Hz, {} channel{}", format.rate, format.channels, format.channels == 1 ? "" : "s");
}

/// A faulty device may give numbers that are none, and one of them would silence what is computed with it.
void silenceNonNumbers(PcmBuffer& sound) {
    for (std::vector<float>& row : sound.channels) {
        std::ranges::replace_if(row, [](float sample) { return !std::isfinite(sample); }, 0.0F);
    }
}

std::vector<const std::uint8_t*> rowsOf(const PcmBuffer& buffer) {
    std::vector<const std::uint8_t*> rows;
    for (const std::vector<float>& row : buffer.channels) {
        rows.push_back(reinterpret_cast<const std::uint8_t*>(row.data()));
    }
    return rows;
}

} // namespace

float soundLevel(const PcmBuffer& buffer) {
    double squares = 0;
    for (const std::vector<float>& row : buffer.channels) {
        for (const float sample : row) {
            squares += static_cast<double>(sample) * static_cast<double>(sample);
        }
    }
    const std::size_t count = buffer.frames() * buffer.channels.size();
    if (count == 0) {
        return 0;
    }
    const auto rms = static_cast<float>(std::sqrt(squares / static_cast<double>(count)));
    return std::clamp((20.0F * std::log10(std::max(rms, 0.00001F)) + 52.0F) / 44.0F, 0.0F, 1.0F);
}

TrackWriter::TrackWriter(std::filesystem::path url, Speaker speaker, bool compressed)
    : url_(std::move(url)), speaker_(speaker),
      file_(compressed ? SoundFile::createCompressed(url_, TrackFormat::processing, TrackFormat::bitRate)
                       : SoundFile::createPlain(url_, TrackFormat::processing)) {}

TrackWriter::~TrackWriter() {
    try {
        close();
    } catch (const std::exception&) { // who wants to know calls close
    }
}

void TrackWriter::append(const PcmBuffer& buffer, std::optional<double> at) {
    if (buffer.frames() == 0) {
        return;
    }
    if (at && seconds() + longestGapLeftAlone < *at) {
        drainConverter();
        writeSilence(*at - seconds());
    }
    PcmBuffer converted = convert(buffer);
    if (converted.frames() == 0) {
        return;
    }
    silenceNonNumbers(converted);
    level_ = soundLevel(converted);
    peak_ = std::max(peak_, level_);
    write(converted);
}

void TrackWriter::writeSilence(double seconds) {
    const double frames = std::min(seconds * TrackFormat::sampleRate, mostSilentFrames);
    if (frames >= 1) {
        drainConverter();
        writeSilentFrames(static_cast<std::size_t>(frames));
    }
}

void TrackWriter::writeSilentFrames(std::size_t frames) {
    for (std::size_t left = frames; left > 0;) {
        const std::size_t part = std::min(left, chunkFrames);
        write({TrackFormat::processing.rate, {std::vector<float>(part)}});
        left -= part;
    }
}

void TrackWriter::pad(double target) {
    if (!(seconds() < target)) {
        return;
    }
    drainConverter();
    // Counted in frames: rounding the difference of seconds would leave the two tracks of a call a frame apart.
    const auto whole = std::llround(std::min(target * TrackFormat::sampleRate, mostSilentFrames));
    writeSilentFrames(static_cast<std::size_t>(std::max<std::int64_t>(whole - framesWritten_, 0)));
}

void TrackWriter::close() {
    drainConverter();
    file_->close();
}

/// Gives what comes out of the converter so far; a few samples stay inside for the next buffer.
PcmBuffer TrackWriter::convert(const PcmBuffer& buffer) {
    const AudioFormat format = buffer.format();
    if (format == TrackFormat::processing) {
        drainConverter();
        return buffer;
    }
    try {
        if (!converter_ || converterInput_ != format) {
            SampleConverter fresh({AV_SAMPLE_FMT_FLTP, format.rate, Ffmpeg::Layout::ofChannels(format.channels)},
                                  TrackFormat::processing);
            drainConverter();
            converter_.emplace(std::move(fresh));
            converterInput_ = format;
        }
        PcmBuffer converted;
        converter_->convert(rowsOf(buffer).data(), static_cast<int>(buffer.frames()), converted);
        return converted;
    } catch (const std::invalid_argument&) {
        throw TranscriberError::failed("unsupported audio format " + describe(format));
    }
}

/// Writes what the converter still holds, before something else follows.
void TrackWriter::drainConverter() {
    if (!converter_) {
        return;
    }
    PcmBuffer rest;
    converter_->finish(rest);
    converter_.reset();
    silenceNonNumbers(rest);
    if (rest.frames() > 0) {
        write(rest);
    }
}

void TrackWriter::write(const PcmBuffer& sound) {
    file_->write(sound);
    framesWritten_ += static_cast<std::int64_t>(sound.frames());
}

} // namespace varnic
