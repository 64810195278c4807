#pragma once

#include "HTTP/Error.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A client for HTTP and HTTPS. Nothing is kept between requests: no cookies, no cache, no connections. Certificates
/// are verified against the system's authorities, or those in $SSL_CERT_FILE. Redirects are followed only where a
/// request says so; else their status is the response's.
namespace http {

/// It may carry a key: never write it to a log.
struct Request {
    std::string url;
    /// GET, or POST with a body.
    std::string method = "GET";
    /// Names and values, in the order of sending.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    /// How long nothing may move on the connection, from the first attempt to connect.
    std::chrono::milliseconds timeout = std::chrono::seconds(60);
    /// How long all of it may take; absent for as long as it moves.
    std::optional<std::chrono::milliseconds> overallTimeout;
    /// Whether it goes where the environment's proxy settings say.
    bool usesProxy = true;
    /// So many redirects of a GET are followed, each only from HTTPS to HTTPS and without the headers. Where it is not
    /// 0, the body of a redirect that is not followed may be left out.
    int mostRedirects = 0;
};

/// Bytes of a body between two calls of `Receiver::progress`.
inline constexpr std::uint64_t progressStep = 262'144;

/// Takes the response as it comes. All is called on the thread that sends; what is thrown ends the exchange and is
/// thrown by `send`.
struct Receiver {
    /// Bytes of the body that are taken; the byte too many ends the exchange with Error `bodyTooLong`.
    std::uint64_t longest = std::numeric_limits<std::uint64_t>::max();
    /// Once, ahead of the body.
    std::function<void(int status)> head = [](int) {};
    /// The next bytes of the body.
    std::function<void(std::string_view bytes)> body = [](std::string_view) {};
    /// Each time a further `progressStep` bytes have been taken, with their count from the first.
    std::function<void(std::uint64_t received)> progress = [](std::uint64_t) {};
};

/// Sends a request and blocks until the whole response has been received; gives its status, which may be any. Throws
/// Error, and Cancellation soon after a request through `stop`. Any thread; several may be under way at once.
int send(const Request& request, const Receiver& receiver, const std::stop_token& stop = {});

} // namespace http
