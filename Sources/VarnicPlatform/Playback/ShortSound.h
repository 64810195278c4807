#pragma once

#include <span>

namespace varnic::ShortSound {

/// Plays interleaved samples as a PlaybackQueue takes them, no more than a second, and returns when they are heard.
/// Silent where there is no audio output. Recordings leave it out. Any thread.
void play(std::span<const float> samples);

} // namespace varnic::ShortSound
