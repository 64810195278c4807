#pragma once

#include "VarnicPlatform/Capture/SoundSurvey.h"

#include <string>
#include <vector>

namespace varnic::cli {

/// What keeps sides of a call from being recorded, a sentence each.
std::vector<std::string> missingDevices(const SoundSurvey& survey);

} // namespace varnic::cli
