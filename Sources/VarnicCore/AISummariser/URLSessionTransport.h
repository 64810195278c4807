#pragma once

#include "VarnicCore/AISummariser/HTTPTransport.h"

#include <chrono>
#include <cstddef>

namespace varnic {

/// Sends by the client of the HTTP library. A server on this computer is asked without a proxy.
class URLSessionTransport final : public HTTPTransport {
public:
    /// A response with more bytes is refused with AIError `badResponse`.
    static constexpr std::size_t longestBody = 16UL * 1024 * 1024;

    /// `timeout` bounds the time without progress (the request's own applies where shorter); twice `timeout` the whole
    /// exchange.
    explicit URLSessionTransport(std::chrono::milliseconds timeout = std::chrono::seconds(120)) : timeout_(timeout) {}

    [[nodiscard]] HTTPResponse send(const http::Request& request, std::stop_token stop) const override;

private:
    std::chrono::milliseconds timeout_;
};

} // namespace varnic
