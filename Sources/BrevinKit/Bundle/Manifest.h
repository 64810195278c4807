#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brevin {

/// The code signature of a bundle: a signed list of everything in it. The list is only ever made anew and compared,
/// never read, so that nothing in it can lead astray. Any thread.
namespace Manifest {

/// A line for each file (mode, SHA-256, path), folder (mode, path) and link (target, path), in the order of the paths;
/// the list and its signature are left out. Throws UpdateError where something else lies in the bundle, and
/// std::runtime_error where it cannot be read.
std::string of(const std::filesystem::path& bundle);

/// Whether the bundle holds exactly what its own list says, and that is signed with the key (base64, Ed25519). Throws
/// as `of`.
bool isIntact(const std::filesystem::path& bundle, std::string_view publicKey);

} // namespace Manifest

} // namespace brevin
