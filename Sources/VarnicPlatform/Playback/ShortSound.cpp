#include "VarnicPlatform/Playback/ShortSound.h"

#include "VarnicPlatform/Playback/PlaybackOutput.h"
#include "VarnicPlatform/Playback/PlaybackQueue.h"

#include <chrono>
#include <thread>

namespace varnic::ShortSound {

namespace {

using namespace std::chrono_literals;

/// An output that takes nothing for so long is given up.
constexpr auto patience = 3s;
/// From the queue to the ear, in a slow sound system.
constexpr auto latency = 200ms;

} // namespace

void play(std::span<const float> samples) {
    PlaybackQueue queue;
    queue.push(samples);
    try {
        const PlaybackOutput output(queue);
        const auto end = std::chrono::steady_clock::now() + patience;
        while (queue.waiting() > 0 && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(20ms);
        }
        std::this_thread::sleep_for(latency);
    } catch (const PlaybackError&) {
        // A signal that cannot be heard is no reason to bother anybody.
        return;
    }
}

} // namespace varnic::ShortSound
