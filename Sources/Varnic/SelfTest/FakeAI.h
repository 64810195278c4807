#pragma once

#include "VarnicCore/AISummariser/HTTPTransport.h"

#include <atomic>
#include <stop_token>

namespace varnic {

/// Answers as the Anthropic API does, without a network. Any thread.
class FakeAI final : public HTTPTransport {
public:
    /// The HTTP status to answer: 200 brings a summary, any other the word that the key is no good.
    std::atomic<int> status = 200;

    /// How many requests were sent.
    [[nodiscard]] int calls() const { return calls_; }

    [[nodiscard]] HTTPResponse send(const http::Request& request, std::stop_token stop) const override;

private:
    mutable std::atomic<int> calls_ = 0;
};

} // namespace varnic
