// Transcription with each model against the bare engine on the same sound: bench-transcription [FILE]
// Without a file, ten minutes of a recording that comes with the speech model, by itself and over an echo. The two take
// turns, since what else the machine does changes from minute to minute; the ratio is the median of the turns'.

#include "Tests/VarnicCore/TemporaryFolder.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"
#include "VarnicPlatform/Speech/TrackSegmenter.h"
#include "bench/Measure.h"

#include <fmt/core.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace varnic;
namespace fs = std::filesystem;

long peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

constexpr int turns = 3;

/// Made by FFmpeg from the speech model's recordings, as a track is: AAC, 64 kbit/s. Throws where that fails.
fs::path track(const fs::path& file, const std::string& how) {
    const std::string command =
        fmt::format("ffmpeg -v error -y {} -t 600 -ac 1 -ar 48000 -c:a aac -b:a 64k '{}'",
                    fmt::format(fmt::runtime(how), fmt::arg("recordings", VARNIC_RECORDINGS)), file.string());
    if (std::system(command.c_str()) != 0) {
        throw std::runtime_error("no track: " + command);
    }
    return file;
}

void compare(const char* what, const SpokenTrack& track, const SpeechModel& model) {
    const std::vector<fs::path> data = SpeechModels::dataDirectories();
    const SpeechTranscriber transcriber({"en-US"}, ModelChoice::from(model.id), data);
    const double length = audioLength(track.file).seconds();
    // What the engine is given, as it is given.
    std::vector<std::vector<float>> sounds;
    std::size_t lines = 0;
    long peak = 0;
    std::vector<bench::Cost> all;
    std::vector<bench::Cost> bare;
    std::vector<bench::Cost> ratios;
    for (int turn = 0; turn < turns; ++turn) {
        all.push_back(bench::costOf([&] { lines = transcriber.transcribe(track, [](double) {}, {}).size(); }));
        if (turn == 0) {
            peak = peakMegabytes();
            TrackSegmenter(track, SpeechModels::detectorFile(data), model.segments(), {})
                .run([&sounds](std::span<const float> samples,
                               const SpeechSegment&) { sounds.emplace_back(samples.begin(), samples.end()); },
                     [](double) {});
        }
        bare.push_back(bench::costOf([&] {
            const SpeechRecognizer recognizer = SpeechRecognizer::create(model, "en-US");
            for (const std::vector<float>& sound : sounds) {
                static_cast<void>(recognizer.decode(sound));
            }
        }));
        ratios.push_back({all.back().elapsed / bare.back().elapsed, all.back().processor / bare.back().processor});
    }
    fmt::print("{}, {}: {:.0f} s of sound, {} segments, {} lines, peak of the process so far {} MB\n", model.name, what,
               length, sounds.size(), lines, peak);
    for (const auto& [name, costs] : {std::pair("ours", &all), {"engine", &bare}}) {
        fmt::print("{:6} {:.1f} s, {:.1f} s of CPU, real-time factor {:.4f}\n", name,
                   bench::median(*costs, &bench::Cost::elapsed), bench::median(*costs, &bench::Cost::processor),
                   bench::median(*costs, &bench::Cost::elapsed) / length);
    }
    fmt::print("ratio  {:.2f} wall, {:.2f} CPU\n", bench::median(ratios, &bench::Cost::elapsed),
               bench::median(ratios, &bench::Cost::processor));
}

} // namespace

int main(int count, char** arguments) {
    const std::span words(arguments, static_cast<std::size_t>(count));
    try {
        std::vector<SpeechModel> models = SpeechModels::installed(SpeechModels::dataDirectories());
        std::erase_if(models, [](const SpeechModel& model) { return !model.fits("en-US"); });
        std::ranges::sort(models, {}, &SpeechModel::bytes);
        if (words.size() > 1) {
            for (const SpeechModel& model : models) {
                compare("one side", {words[1], Speaker::them, {}}, model);
            }
            return EXIT_SUCCESS;
        }
        const TemporaryFolder folder;
        const fs::path them = track(folder.path() / "them.m4a", "-stream_loop -1 -i '{recordings}/two_cities.wav'");
        // What you say, and 12 dB down and 30 ms late what they do.
        const fs::path you =
            track(folder.path() / "you.m4a", "-stream_loop -1 -i '{recordings}/endgame_nagg_nell.wav' "
                                             "-stream_loop -1 -i '{recordings}/two_cities.wav' -filter_complex "
                                             "'[1]volume=0.25,adelay=30[echo];[0][echo]amix=normalize=0'");
        for (const SpeechModel& model : models) {
            compare("one side", {them, Speaker::them, {}}, model);
            compare("over an echo", {you, Speaker::you, them}, model);
        }
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return EXIT_FAILURE;
    }
}
