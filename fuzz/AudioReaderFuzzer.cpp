#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioReader.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

namespace {

using varnic::AudioReader;
using varnic::PcmBuffer;

/// Enough to pass any file's beginning; a time stamp may ask for an hour of silence.
constexpr std::size_t mostFrames = 500'000;

void readSome(AudioReader reader) {
    PcmBuffer block;
    std::size_t frames = 0;
    while (frames < mostFrames && reader.read(block)) {
        if (block.format() != reader.format()) {
            std::abort();
        }
        frames += block.frames();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A file without a name, reused: the reader opens regular files alone.
    static const int file = memfd_create("fuzz", 0);
    if (file < 0 || ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) {
        std::abort();
    }
    const std::filesystem::path path = "/proc/self/fd/" + std::to_string(file);
    try {
        readSome(AudioReader::open(path));
        readSome(AudioReader::openMono(path, 16'000));
        AudioReader elsewhere = AudioReader::openUpToStereo(path, 48'000);
        elsewhere.seek(mostFrames);
        readSome(std::move(elsewhere));
        varnic::audioLength(path);
    } catch (const varnic::AudioError&) {
        return 0;
    }
    return 0;
}
