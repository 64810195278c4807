#pragma once

#include <string>
#include <vector>

/// The program's short sounds: a bright one as a recording starts, a low one as it ends.
namespace varnic::Sounds {

/// "Tink" or "Pop" in stereo at 48,000 Hz, interleaved; empty for another name.
std::vector<float> samples(const std::string& name);

/// Plays a sound from a thread of its own. Silent where there is no sound output. Recordings leave it out.
void play(const std::string& name);

} // namespace varnic::Sounds
