#pragma once

#include <stdexcept>
#include <string>

namespace http {

/// Why no response came; `what()` is a sentence for the user, without anything of the request in it.
class Error : public std::runtime_error {
public:
    enum class Kind {
        badURL,
        notConnectedToInternet,
        networkConnectionLost,
        cannotFindHost,
        cannotConnectToHost,
        timedOut,
        dnsLookupFailed,
        serverCertificateUntrusted,
        secureConnectionFailed,
        notHTTP,     ///< What answers speaks another protocol.
        headTooLong, ///< More headers than any server sends.
        bodyTooLong, ///< More than the receiver takes.
        other,
    };

    Error(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}

    [[nodiscard]] Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// The caller asked to stop, and what was asked for did not happen.
class Cancellation : public std::runtime_error {
public:
    Cancellation() : std::runtime_error("Cancelled.") {}
};

} // namespace http
