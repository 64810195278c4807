#pragma once

#include "VarnicCore/Transcript/Utterances.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"
#include "VarnicPlatform/Speech/SpeechSegments.h"

#include <functional>
#include <span>
#include <vector>

/// What the engine makes of a speech segment, with a guard against its losing itself.
namespace varnic::GuardedDecoding {

using Decode = std::function<Recognition(std::span<const float>)>;

/// The words of a segment. `samples` are those of `segment.audio`; the words' times count from where `track` begins, as
/// those of the segment do. A text that repeats itself is mistrusted: its audio is cut at its quietest and decoded
/// again. Throws what `engine` throws.
std::vector<TimedWord> decode(std::span<const float> samples, const SpeechSegment& segment, const TrackLevels& track,
                              const Decode& engine);

} // namespace varnic::GuardedDecoding
