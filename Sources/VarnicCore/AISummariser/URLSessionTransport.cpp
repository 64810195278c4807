#include "VarnicCore/AISummariser/URLSessionTransport.h"

#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/ServerAddress.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace varnic {

namespace {

/// Throws the AIError that the failure is, or else returns.
void throwIfAnswersFault(http::Error::Kind kind) {
    switch (kind) {
    case http::Error::Kind::badURL:
        throw AIError::badURL();
    case http::Error::Kind::notHTTP:
        throw AIError::badResponse("No HTTP response");
    case http::Error::Kind::headTooLong:
        throw AIError::badResponse("its headers are too long");
    case http::Error::Kind::bodyTooLong:
        throw AIError::badResponse("more than 16 MB");
    default:
        break;
    }
}

} // namespace

HTTPResponse URLSessionTransport::send(const http::Request& request, std::stop_token stop) const {
    http::Request bounded = request;
    bounded.timeout = std::min(request.timeout, timeout_);
    bounded.overallTimeout = 2 * timeout_;
    const auto address = ServerAddress::parse(request.url);
    bounded.usesProxy = !address || !address->isLocal();
    std::string body;
    const auto take = [&body](std::string_view bytes) { body += bytes; };
    try {
        const int status = http::send(bounded, {.longest = longestBody, .body = take}, stop);
        return {.status = status, .body = std::move(body)};
    } catch (const http::Error& error) {
        throwIfAnswersFault(error.kind());
        throw;
    }
}

} // namespace varnic
