#pragma once

#include "VarnicCore/Transcript/Utterances.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"
#include "VarnicPlatform/Speech/SpeechStretches.h"

#include <functional>
#include <span>
#include <vector>

/// What the engine makes of a stretch of speech, with a guard against its losing itself.
namespace varnic::StretchHearing {

using Decode = std::function<Recognition(std::span<const float>)>;

/// The words of a stretch. `samples` are those of `stretch.sound`; the words' times count from where `track` begins, as
/// those of the stretch do. A text that repeats itself is mistrusted: its sound is cut at its quietest and heard again.
/// Throws what `decode` throws.
std::vector<TimedWord> hear(std::span<const float> samples, const SpeechStretch& stretch, const TrackLevels& track,
                            const Decode& decode);

} // namespace varnic::StretchHearing
