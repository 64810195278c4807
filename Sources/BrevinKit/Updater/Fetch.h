#pragma once

#include "BrevinKit/UpdateFeed.h"

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>

namespace brevin {

/// Gets the feed and the archive over HTTP. All block, throw http::Cancellation soon after a request through `stop`,
/// and may be called on any thread.
namespace Fetch {

/// The feed. Throws UpdateError `feedUnavailable` for anything but one with status 200.
UpdateFeed feed(const std::string& url, const std::stop_token& stop);

/// Puts the archive into a new file. `progress` is called on this thread each time a further 262,144 bytes are there,
/// with their share of the whole. Throws UpdateError where it isn’t quite as long as the feed says or the server
/// refuses it, http::Error where the connection fails, and std::runtime_error where the disk takes no more.
void archive(const UpdateFeed::Download& download, const std::filesystem::path& file,
             const std::function<void(double)>& progress, const std::stop_token& stop);

} // namespace Fetch

} // namespace brevin
