#pragma once

#include "VarnicCore/Models/Speaker.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// Makes the two tracks of a call by the flite program's voices. Any thread; blocks while it speaks.
namespace varnic::FixtureBuilder {

/// Silence that is part of each line, before and after its words, in seconds: recognisers need some.
inline constexpr double silenceBefore = 0.3;
inline constexpr double silenceBehind = 0.4;

struct Result {
    std::filesystem::path you;
    std::filesystem::path them;
    /// Of either track, in seconds.
    double duration = 0;
    /// Where each side's lines start in its track, in seconds; the words begin `silenceBefore` later.
    std::map<Speaker, std::vector<double>> placements;
};

/// Makes you.caf and them.caf in the folder, of one length, in which the sides take turns with `gap` seconds between
/// the lines. Nothing where that fails.
std::optional<Result> build(const std::filesystem::path& folder,
                            const std::vector<std::pair<Speaker, std::string>>& lines, double gap);

/// The names of flite's voices; none where there is no such program.
std::set<std::string> installedVoices();

} // namespace varnic::FixtureBuilder
