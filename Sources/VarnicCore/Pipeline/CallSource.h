#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Which application carries a call, guessed from what runs.
namespace varnic::CallSource {

/// The label of the call: the calling application at the front, else the first known one that runs, else "Browser
/// call" for a browser at the front, else "Call". The arguments are bundle identifiers, compared exactly (see
/// LinuxPrograms.h for what Linux programs map to).
std::string_view guess(const std::vector<std::string>& running, const std::optional<std::string>& frontmost);

} // namespace varnic::CallSource
