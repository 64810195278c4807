// Transcription against the bare engine on the same sound, in one run: bench-transcription [FILE]
// Without a file, half an hour of a recording that comes with the speech model.

#include "Tests/VarnicCore/TemporaryFolder.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"
#include "VarnicPlatform/Speech/TrackListener.h"
#include "bench/Measure.h"

#include <fmt/core.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace varnic;
namespace fs = std::filesystem;

long peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

/// Half an hour of speech as a track: AAC, 64 kbit/s.
fs::path longTrack(const fs::path& folder) {
    const fs::path file = folder / "track.m4a";
    const std::string command = fmt::format("ffmpeg -v error -y -stream_loop -1 -i '{}/two_cities.wav' -t 1800 -ac 1 "
                                            "-ar 48000 -c:a aac -b:a 64k '{}'",
                                            VARNIC_RECORDINGS, file.string());
    return std::system(command.c_str()) == 0 ? file : fs::path();
}

void compare(const fs::path& file) {
    const std::vector<fs::path> data = SpeechModels::dataDirectories();
    const double length = audioLength(file).seconds();
    std::size_t lines = 0;
    const bench::Cost ours = bench::costOf([&] {
        const SpeechTranscriber transcriber("en-US", data);
        lines = transcriber.transcribe({file, Speaker::them}, [](double) {}, {}).size();
    });
    const long peak = peakMegabytes();

    // The same stretches of sound, found and read beforehand.
    TrackListener listener({file, Speaker::them, {}}, SpeechModels::detectorFile(data), {});
    const std::vector<SpeechStretch> stretches = listener.find([](double) {});
    AudioReader reader = AudioReader::openMono(file, SpeechRecognizer::rate);
    std::vector<float> samples;
    PcmBuffer block;
    while (reader.read(block)) {
        for (const float sample : block.channels.front()) {
            samples.push_back(sample * listener.gain());
        }
    }
    const auto model = SpeechModels::choose(SpeechModels::installed(data), "en-US");
    const bench::Cost bare = bench::costOf([&] {
        const SpeechRecognizer recognizer = SpeechRecognizer::create(*model, "en-US");
        for (const auto& [speech, sound] : stretches) {
            const auto first = static_cast<std::size_t>(sound.start * SpeechRecognizer::rate);
            const auto last = std::min(static_cast<std::size_t>(sound.end * SpeechRecognizer::rate), samples.size());
            static_cast<void>(recognizer.decode(std::span(samples).subspan(first, last - first)));
        }
    });
    fmt::print("sound {:.0f} s, {} stretches, {} lines\n", length, stretches.size(), lines);
    fmt::print("ours   {:.1f} s, {:.1f} s of CPU, real-time factor {:.4f}, peak {} MB\n", ours.elapsed, ours.processor,
               ours.elapsed / length, peak);
    fmt::print("engine {:.1f} s, {:.1f} s of CPU, real-time factor {:.4f}\n", bare.elapsed, bare.processor,
               bare.elapsed / length);
    fmt::print("ratio  {:.2f} wall, {:.2f} CPU\n", ours.elapsed / bare.elapsed, ours.processor / bare.processor);
}

} // namespace

int main(int count, char** arguments) {
    const std::span words(arguments, static_cast<std::size_t>(count));
    try {
        const TemporaryFolder folder;
        compare(words.size() > 1 ? fs::path(words[1]) : longTrack(folder.path()));
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return EXIT_FAILURE;
    }
}
