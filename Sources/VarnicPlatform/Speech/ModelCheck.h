#pragma once

#include "VarnicPlatform/Speech/SpeechModel.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Tries speech models and the network of NoiseReduction out in a process of their own: given files of another kind,
/// the engine ends the process that it is in, and a recording with it.
namespace varnic::ModelCheck {

/// To be called first in a program's `main`: from then on `fault` starts the program once more to try a model out. In
/// that second start it gives the exit code to end with at once.
std::optional<int> enable(int argc, char** argv);

/// Why a model can't be used for a locale, or for its first language where it doesn't name the locale's: a sentence
/// that names the model. Nothing where it can, and in a program that didn't `enable` this. Blocks while the engine
/// loads the model, a minute of its work at most, once for each state of its files. Any thread.
std::optional<std::string> fault(const SpeechModel& model, std::string_view locale = {});

/// Whether a network of NoiseReduction can be used; true in a program that didn't `enable` this. Blocks as `fault`
/// does.
bool isUsable(const std::filesystem::path& network);

/// The one of SpeechModels::choose, without those that can't be used. Where there is none because of that, `faults`
/// holds the sentences. Blocks as `fault` does.
std::optional<SpeechModel> choose(std::vector<SpeechModel> models, std::string_view locale, const ModelChoice& choice,
                                  std::vector<std::string>& faults);

} // namespace varnic::ModelCheck
