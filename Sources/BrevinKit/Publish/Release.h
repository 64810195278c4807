#pragma once

#include "BrevinKit/Publish/ReleaseKey.h"
#include "BrevinKit/UpdateFeed.h"

#include <filesystem>
#include <string>

namespace brevin {

/// What a publisher makes of a bundle. All throw std::runtime_error. Any thread.
namespace Release {

/// Puts the signed list of its contents into a bundle that is otherwise complete, in place of an earlier one.
void seal(const std::filesystem::path& bundle, const ReleaseKey& key);

/// Packs the bundle into a new zip, under its own name and with modes and links; an earlier one is replaced.
void pack(const std::filesystem::path& bundle, const std::filesystem::path& zip);

/// What the feed says of an archive that is downloaded from the URL.
UpdateFeed::Download describe(const std::filesystem::path& zip, std::string url, const ReleaseKey& key);

} // namespace Release

} // namespace brevin
