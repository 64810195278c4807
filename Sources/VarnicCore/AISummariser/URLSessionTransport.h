#pragma once

#include "VarnicCore/AISummariser/HTTPTransport.h"

#include <chrono>
#include <cstddef>

namespace varnic {

/// HTTP and HTTPS through libcurl. Nothing is kept between requests: no cookies, no cache, no connections. Certificates
/// are verified against the system's authorities, or those in $SSL_CERT_FILE. Redirects are not followed: their status
/// is the response's. The environment's proxy settings hold, except for a server on this computer.
class URLSessionTransport final : public HTTPTransport {
public:
    /// A response with more bytes is refused with AIError `badResponse`.
    static constexpr std::size_t longestBody = 16UL * 1024 * 1024;

    /// `timeout` bounds the time without anything moving, together with the request's own; twice `timeout` the whole
    /// exchange.
    explicit URLSessionTransport(std::chrono::milliseconds timeout = std::chrono::seconds(120)) : timeout_(timeout) {}

    [[nodiscard]] HTTPResponse send(const HTTPRequest& request, std::stop_token stop) const override;

private:
    std::chrono::milliseconds timeout_;
};

} // namespace varnic
