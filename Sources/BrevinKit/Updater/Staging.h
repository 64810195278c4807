#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brevin {

/// Makes an archive into an app that may be installed, in a folder of its own. All block; any thread.
namespace Staging {

/// Where updates of a bundle are staged; an app without an identifier goes by "app.brevin".
std::filesystem::path folder(const std::filesystem::path& caches, std::string_view identifier);

/// Makes the folder anew, for this user only. Throws std::runtime_error.
void prepare(const std::filesystem::path& folder);

/// What a staged app must be.
struct Expected {
    std::string identifier;
    std::string version;
    /// Base64 of the publisher’s key.
    std::string publicKey;
};

/// Unpacks the archive, if it is signed with the key (both base64), beside itself and removes it; gives the app. Throws
/// UpdateError, and std::runtime_error where the archive can’t be unpacked.
std::filesystem::path unpack(const std::filesystem::path& zip, std::string_view signature, std::string_view publicKey);

/// Takes away what marks files as ones from the internet, the attributes user.xdg.*, from an app and all that it holds.
void clearOrigin(const std::filesystem::path& app);

/// Throws UpdateError where the app isn’t what is expected, or not as its publisher made it.
void validate(const std::filesystem::path& app, const Expected& expected);

} // namespace Staging

} // namespace brevin
