#include "VarnicCore/Audio/AppendedFile.h"
#include "VarnicCore/Audio/SoundFile.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <string_view>

namespace varnic {

namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they stand in memory");

constexpr int sampleBytes = sizeof(float);
constexpr std::int64_t secondsASync = 4;

/// Stands for a length that is not known yet.
constexpr std::uint32_t unknown = std::numeric_limits<std::uint32_t>::max();

/// Appends numbers in either order of bytes.
class Header {
public:
    void text(std::string_view value) { bytes.insert(bytes.end(), value.begin(), value.end()); }

    template <typename Number>
    void little(Number value) {
        std::uint8_t raw[sizeof(Number)];
        std::memcpy(raw, &value, sizeof(Number));
        bytes.insert(bytes.end(), std::begin(raw), std::end(raw));
    }

    template <typename Number>
    void big(Number value) {
        little(value);
        std::reverse(bytes.end() - sizeof(Number), bytes.end());
    }

    Bytes bytes;
};

/// RIFF with format 3, whose lengths are those of at most 4 GB; a longer file keeps the unknown ones.
Bytes wavHeader(AudioFormat format, std::int64_t dataBytes) {
    constexpr std::int64_t behindFirstLength = 4 + 24 + 12 + 8;
    constexpr std::uint16_t ieeeFloat = 3;
    const int frameBytes = sampleBytes * format.channels;
    const bool known = dataBytes >= 0 && dataBytes + behindFirstLength < unknown;
    Header out;
    out.text("RIFF");
    out.little(known ? static_cast<std::uint32_t>(dataBytes + behindFirstLength) : unknown);
    out.text("WAVEfmt ");
    out.little(std::uint32_t{16});
    out.little(ieeeFloat);
    out.little(static_cast<std::uint16_t>(format.channels));
    out.little(static_cast<std::uint32_t>(format.rate));
    out.little(static_cast<std::uint32_t>(format.rate * frameBytes));
    out.little(static_cast<std::uint16_t>(frameBytes));
    out.little(static_cast<std::uint16_t>(8 * sampleBytes));
    out.text("fact");
    out.little(std::uint32_t{4});
    out.little(known ? static_cast<std::uint32_t>(dataBytes / frameBytes) : unknown);
    out.text("data");
    out.little(known ? static_cast<std::uint32_t>(dataBytes) : unknown);
    return out.bytes;
}

/// Core Audio Format; a length of -1 reaches to the end of the file.
Bytes cafHeader(AudioFormat format, std::int64_t dataBytes) {
    constexpr std::uint32_t floatLittleEndian = 3;
    constexpr std::int64_t editCountBytes = 4;
    Header out;
    out.text("caff");
    out.big(std::uint16_t{1});
    out.big(std::uint16_t{0});
    out.text("desc");
    out.big(std::int64_t{32});
    out.big(static_cast<double>(format.rate));
    out.text("lpcm");
    out.big(floatLittleEndian);
    out.big(static_cast<std::uint32_t>(sampleBytes * format.channels));
    out.big(std::uint32_t{1}); // frames a packet
    out.big(static_cast<std::uint32_t>(format.channels));
    out.big(static_cast<std::uint32_t>(8 * sampleBytes));
    out.text("data");
    out.big(dataBytes < 0 ? std::int64_t{-1} : dataBytes + editCountBytes);
    out.big(std::uint32_t{0});
    return out.bytes;
}

class PlainFile final : public SoundFile {
public:
    PlainFile(const std::filesystem::path& path, AudioFormat format)
        : format_(format), isWav_(Unicode::lowerCased(path.extension().string()) == ".wav"),
          file_(AppendedFile::create(path)) {
        file_.append(header(-1));
        headerBytes_ = file_.size();
    }

    void write(const PcmBuffer& sound) override {
        const std::size_t frames = sound.frames();
        std::vector<float> interleaved;
        interleaved.reserve(frames * sound.channels.size());
        for (std::size_t frame = 0; frame < frames; ++frame) {
            for (const std::vector<float>& row : sound.channels) {
                interleaved.push_back(row[frame]);
            }
        }
        file_.append({reinterpret_cast<const std::uint8_t*>(interleaved.data()), interleaved.size() * sizeof(float)});
        unsynced_ += static_cast<std::int64_t>(frames);
        if (unsynced_ >= secondsASync * format_.rate) {
            unsynced_ = 0;
            file_.sync();
        }
    }

    void close() override {
        file_.overwrite(0, header(file_.size() - headerBytes_));
        file_.sync();
    }

private:
    [[nodiscard]] Bytes header(std::int64_t dataBytes) const {
        return isWav_ ? wavHeader(format_, dataBytes) : cafHeader(format_, dataBytes);
    }

    AudioFormat format_;
    bool isWav_;
    AppendedFile file_;
    std::int64_t headerBytes_ = 0;
    std::int64_t unsynced_ = 0;
};

} // namespace

std::unique_ptr<SoundFile> SoundFile::createPlain(const std::filesystem::path& path, AudioFormat format) {
    return std::make_unique<PlainFile>(path, format);
}

} // namespace varnic
