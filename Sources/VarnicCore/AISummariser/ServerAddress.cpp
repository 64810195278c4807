#include "VarnicCore/AISummariser/ServerAddress.h"

#include "VarnicCore/Text/Unicode.h"

#include <glib.h>

#include <memory>

namespace varnic {

namespace {

// Escapes in these parts stay as they were written.
constexpr auto flags =
    static_cast<GUriFlags>(G_URI_FLAGS_ENCODED_PATH | G_URI_FLAGS_ENCODED_QUERY | G_URI_FLAGS_ENCODED_FRAGMENT);

/// Takes over one of GLib's strings.
std::optional<std::string> taken(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owner(text, g_free);
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

const char* orNull(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

} // namespace

std::optional<ServerAddress> ServerAddress::parse(std::string_view text) {
    if (Unicode::any(text, Unicode::isSpace) || text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    char* scheme = nullptr;
    char* userInfo = nullptr;
    char* host = nullptr;
    char* path = nullptr;
    char* query = nullptr;
    ServerAddress address;
    if (g_uri_split(std::string(text).c_str(), flags, &scheme, &userInfo, &host, &address.port_, &path, &query, nullptr,
                    nullptr) == FALSE) {
        return std::nullopt;
    }
    address.scheme_ = taken(scheme).value_or("");
    address.userInfo_ = taken(userInfo);
    address.host_ = taken(host).value_or("");
    address.path_ = taken(path).value_or("");
    address.query_ = taken(query);
    return address;
}

std::string ServerAddress::host() const {
    return host_.find(':') == std::string::npos ? host_ : "[" + host_ + "]";
}

std::string ServerAddress::hostAndPort() const {
    return port_ < 0 ? host() : host() + ":" + std::to_string(port_);
}

bool ServerAddress::isLocal() const {
    const std::string name = Unicode::lowerCased(host_);
    return name == "localhost" || name == "127.0.0.1" || name == "::1" || name.ends_with(".localhost");
}

std::string ServerAddress::appending(std::string_view path) const {
    std::string longer = path_;
    if (!longer.ends_with('/')) {
        longer += '/';
    }
    longer += path;
    return taken(g_uri_join(flags, scheme_.c_str(), orNull(userInfo_), host_.c_str(), port_, longer.c_str(),
                            orNull(query_), nullptr))
        .value_or("");
}

} // namespace varnic
