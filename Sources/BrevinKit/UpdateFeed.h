#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brevin {

/// The newest release, as its publisher's feed describes it.
struct UpdateFeed {
    /// The signed archive.
    struct Download {
        /// Of a zip that holds one application.
        std::string url;
        /// Exact size in bytes.
        std::int64_t length = 0;
        /// Base64 of the Ed25519 signature over the archive's bytes.
        std::string edSignature;

        bool operator==(const Download&) const = default;
    };

    /// Such as "1.4.2".
    std::string version;
    /// The release's page.
    std::string url;
    /// Release notes for the user.
    std::optional<std::string> notes;
    /// The oldest system that it runs on, such as "14.0".
    std::optional<std::string> minimumSystemVersion;
    /// Without it the update can only be fetched by hand.
    std::optional<Download> download;

    /// A feed that is longer, in bytes, is no feed.
    static constexpr std::size_t longest = 1024UL * 1024UL;

    /// Reads the feed's JSON; other keys than those above are passed over, and null under an optional one counts as
    /// missing. Throws UpdateError for anything that is not such a feed.
    static UpdateFeed decode(std::string_view json);

    /// The feed's JSON, without keys for what is missing.
    [[nodiscard]] std::string encode() const;

    bool operator==(const UpdateFeed&) const = default;
};

} // namespace brevin
