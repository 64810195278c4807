#pragma once

#include "VarnicCore/AISummariser/HTTPTransport.h"

#include <stop_token>
#include <utility>

namespace varnic {

/// Answers every request the same, in place of a server.
class FixedTransport final : public HTTPTransport {
public:
    explicit FixedTransport(HTTPResponse response) : response_(std::move(response)) {}

    [[nodiscard]] HTTPResponse send(const http::Request& /*request*/, std::stop_token /*stop*/) const override {
        return response_;
    }

private:
    HTTPResponse response_;
};

} // namespace varnic
