#pragma once

#include "HTTP/Client.h"

#include <stop_token>
#include <string>

namespace varnic {

struct HTTPResponse {
    int status = 0;
    std::string body;
};

/// What sends a request and waits for the response. Any thread; several requests may be under way at once.
class HTTPTransport {
public:
    HTTPTransport() = default;
    HTTPTransport(const HTTPTransport&) = delete;
    HTTPTransport& operator=(const HTTPTransport&) = delete;
    virtual ~HTTPTransport() = default;

    /// Blocks until the whole response is there; its status may be any. Throws http::Error, AIError for a
    /// response that cannot be one, and http::Cancellation soon after a request through `stop`.
    [[nodiscard]] virtual HTTPResponse send(const http::Request& request, std::stop_token stop) const = 0;
};

} // namespace varnic
