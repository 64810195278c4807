#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace varnic {

/// A request with a body. It may carry a key: never write it to a log.
struct HTTPRequest {
    std::string url;
    std::string method = "POST";
    /// Names and values, in the order of sending.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    /// How long nothing may move on the connection, from the first attempt to connect.
    std::chrono::milliseconds timeout = std::chrono::seconds(60);
};

struct HTTPResponse {
    int status = 0;
    std::string body;
};

/// Why no response came; `what()` is a sentence for the user, without anything of the request in it.
class TransportError : public std::runtime_error {
public:
    enum class Kind {
        notConnectedToInternet,
        networkConnectionLost,
        cannotFindHost,
        cannotConnectToHost,
        timedOut,
        dnsLookupFailed,
        serverCertificateUntrusted,
        secureConnectionFailed,
        other,
    };

    TransportError(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}

    [[nodiscard]] Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// The caller asked to stop, and what was asked for did not happen.
class Cancellation : public std::runtime_error {
public:
    Cancellation() : std::runtime_error("Cancelled.") {}
};

/// What sends a request and waits for the response. Any thread; several requests may be under way at once.
class HTTPTransport {
public:
    HTTPTransport() = default;
    HTTPTransport(const HTTPTransport&) = delete;
    HTTPTransport& operator=(const HTTPTransport&) = delete;
    virtual ~HTTPTransport() = default;

    /// Blocks until the whole response is there; its status may be any. Throws TransportError, AIError for a response
    /// that cannot be one, and Cancellation soon after a request through `stop`.
    [[nodiscard]] virtual HTTPResponse send(const HTTPRequest& request, std::stop_token stop) const = 0;
};

} // namespace varnic
