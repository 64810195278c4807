#pragma once

#include "VarnicCore/Models/Speaker.h"

#include <optional>
#include <string>
#include <string_view>

namespace varnic {

/// What a call says in whose audio no words were found.
inline constexpr const char* nobodyHeard = "Nobody was heard on this recording.";

/// What a call says that was not transcribed because the program ended.
inline constexpr const char* quitProblem =
    "Varnic was quit before this call was transcribed — choose Transcribe Again.";

/// What stands in `CallRecord::problem`: why there is no transcript, which the next one may change, and after it
/// what audio was lost, which stays true. Pure.
namespace CallProblem {

/// The sentences that report lost audio on one side, from a moment to another or the end, in seconds; the reason is
/// one or more sentences.
std::string loss(Speaker side, double from, std::optional<double> until, std::string_view reason);

/// The part about lost audio; nothing where there is none.
std::optional<std::string> lossIn(const std::optional<std::string>& problem);

/// The part ahead of that; nothing where there is none.
std::optional<std::string> withoutLoss(const std::optional<std::string>& problem);

/// Why there is no transcript, if anything, and what audio was lost, if any was.
std::optional<std::string> joined(const std::optional<std::string>& problem, const std::optional<std::string>& loss);

/// Whether the call waits for its transcript since the program ended.
bool isQuit(const std::optional<std::string>& problem);

} // namespace CallProblem

} // namespace varnic
