#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnic {

/// A URL in its parts (RFC 3986). Any thread.
class ServerAddress {
public:
    /// Nothing for a text that is no URL; a text with blanks or line breaks is none. A URL without scheme or host is
    /// one.
    static std::optional<ServerAddress> parse(std::string_view text);

    /// Whether it names a server to be reached by HTTP or HTTPS.
    [[nodiscard]] bool isHTTP() const { return (scheme_ == "http" || scheme_ == "https") && hasHost(); }

    [[nodiscard]] bool hasHost() const { return !host_.empty(); }

    /// Whether a user's name or a password stands in it.
    [[nodiscard]] bool hasUser() const { return userInfo_.has_value(); }

    /// As it was written, an IPv6 address in brackets.
    [[nodiscard]] std::string host() const;

    /// The host, and ":" and the port where the URL has one.
    [[nodiscard]] std::string hostAndPort() const;

    /// Whether the host is this computer by one of its usual names. Other spellings of the loopback address are not.
    [[nodiscard]] bool isLocal() const;

    /// The URL with a relative path appended to its own.
    [[nodiscard]] std::string appending(std::string_view path) const;

private:
    ServerAddress() = default;

    /// Lower-cased; empty for none, as the host.
    std::string scheme_;
    std::optional<std::string> userInfo_;
    std::string host_;
    /// -1 for none.
    int port_ = -1;
    std::string path_;
    std::optional<std::string> query_;
};

} // namespace varnic
