#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace brevin {

/// What a bundle says of itself in its Contents/Info.plist. A bundle is a folder "<name>.app" whose `Contents` holds
/// all that the program consists of.
struct BundleInfo {
    /// CFBundleIdentifier; empty when missing.
    std::string identifier;
    /// CFBundleName: the name shown in messages.
    std::string name;
    /// CFBundleShortVersionString.
    std::string version = "1.0";
    /// CFBundleExecutable: the program, as a path below `Contents`.
    std::string executable;
    /// BrevinUpdateFeedURL: where the feed is. Without it there are no updates.
    std::optional<std::string> feedURL;
    /// BrevinUpdatePublicKey: base64 of the 32 bytes of an Ed25519 key. Without it nothing is downloaded by itself.
    std::optional<std::string> publicKey;

    /// Reads a property list in XML; other keys and values of other types are passed over. Nothing where there is no
    /// such file. Any thread.
    static std::optional<BundleInfo> read(const std::filesystem::path& propertyList);

    /// As a property list, without keys for what is missing.
    [[nodiscard]] std::string encode() const;

    bool operator==(const BundleInfo&) const = default;
};

/// Where things lie in a bundle.
namespace Bundle {

std::filesystem::path infoFile(const std::filesystem::path& bundle);
/// The list of all that the bundle holds, see Manifest.
std::filesystem::path manifestFile(const std::filesystem::path& bundle);
/// The signature of the list.
std::filesystem::path signatureFile(const std::filesystem::path& bundle);

/// The bundle that a program lies in, if it lies in one.
std::optional<std::filesystem::path> around(const std::filesystem::path& program);

} // namespace Bundle

} // namespace brevin
