// Live transcription of a call, at the speed at which it is spoken: bench-live [SECONDS]
// First one side speaks all the time, then both at once, which no call does: what the processor has to bear at most,
// and how long after a pause the words of the line before it are there.

#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicPlatform/Speech/LiveRecognizer.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "bench/Measure.h"

#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace varnic;
namespace fs = std::filesystem;

constexpr int rate = 16000;
/// Frames of a piece: 20 ms, about what PipeWire gives at once.
constexpr std::size_t piece = 320;

/// A recording over and over, `seconds` of it.
std::vector<float> sound(const fs::path& file, double seconds) {
    std::vector<float> samples;
    const auto wanted = static_cast<std::size_t>(seconds * rate);
    while (samples.size() < wanted) {
        AudioReader reader = AudioReader::openMono(file, rate);
        for (PcmBuffer block; reader.read(block);) {
            samples.insert(samples.end(), block.channels[0].begin(), block.channels[0].end());
        }
    }
    samples.resize(wanted);
    return samples;
}

/// One side of the call.
struct Side {
    Side(Speaker who, std::vector<float> spoken) : speaker(who), samples(std::move(spoken)) {
        const auto onPartial = [this](Speaker, const std::vector<Segment>&) { ++partials; };
        const auto onCommit = [this](Speaker, const std::vector<Segment>& lines) {
            if (!lines.empty()) {
                delays.push_back({.elapsed = bench::now(CLOCK_MONOTONIC) - began - lines.back().end, .processor = 0});
            }
        };
        recognizer = LiveRecognizer::create(speaker, "en-US", SpeechModels::dataDirectories(), onPartial, onCommit);
        if (!recognizer) {
            throw std::runtime_error("no speech model for English");
        }
    }

    void speak(std::size_t from) const {
        const std::span<const float> next = std::span(samples).subspan(from, piece);
        recognizer->append({.rate = rate, .channels = {{next.begin(), next.end()}}}, static_cast<double>(from) / rate);
    }

    Speaker speaker;
    std::vector<float> samples;
    double began = 0;
    /// Written on the engine's thread, read once that is done.
    std::size_t partials = 0;
    std::vector<bench::Cost> delays;
    std::unique_ptr<LiveRecognizer> recognizer;
};

void measure(const std::vector<Side*>& sides) {
    const auto start = std::chrono::steady_clock::now();
    for (Side* side : sides) {
        side->began = bench::now(CLOCK_MONOTONIC);
    }
    const std::size_t length = sides.front()->samples.size();
    const bench::Cost cost = bench::costOf([&] {
        for (std::size_t from = 0; from + piece <= length; from += piece) {
            std::this_thread::sleep_until(start + std::chrono::milliseconds(1000 * (from + piece) / rate));
            std::ranges::for_each(sides, [from](const Side* side) { side->speak(from); });
        }
    });
    for (Side* side : sides) {
        side->recognizer->endAudio();
        while (!side->recognizer->isDone()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        const auto slowest = std::ranges::max_element(side->delays, {}, &bench::Cost::elapsed);
        fmt::print("{:4}: {} lines, {} times in between; after their last word {:.2f} s (median), {:.2f} s at most\n",
                   rawValue(side->speaker), side->delays.size(), side->partials,
                   bench::median(side->delays, &bench::Cost::elapsed), slowest->elapsed);
    }
    fmt::print("{:.0f} s of {}: {:.1f} % of a processor\n", cost.elapsed, sides.size() == 1 ? "one side" : "both sides",
               100 * cost.processor / cost.elapsed);
}

void measure(double seconds) {
    const fs::path recordings = VARNIC_RECORDINGS;
    Side alone(Speaker::them, sound(recordings / "two_cities.wav", seconds));
    Side you(Speaker::you, sound(recordings / "endgame_nagg_nell.wav", seconds));
    Side them(Speaker::them, alone.samples);
    // The models are loaded by then.
    std::this_thread::sleep_for(std::chrono::seconds(3));
    measure(std::vector{&alone});
    measure(std::vector{&you, &them});
}

} // namespace

int main(int count, char** arguments) {
    try {
        constexpr double usual = 60;
        measure(count > 1 ? std::stod(std::span(arguments, static_cast<std::size_t>(count))[1]) : usual);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return EXIT_FAILURE;
    }
}
