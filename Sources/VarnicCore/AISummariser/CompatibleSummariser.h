#pragma once

#include "VarnicCore/AISummariser/AISummariser.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// Digests by any server that speaks the chat completions form.
class CompatibleSummariser final : public AISummariser {
public:
    CompatibleSummariser(std::string baseURL, std::string model, std::optional<std::string> apiKey,
                         std::shared_ptr<const HTTPTransport> transport);

    [[nodiscard]] std::string displayName() const override { return model_; }

    /// Throws AIError `badURL`, then `noModel`, then `noKey` for a server that is not on this computer.
    [[nodiscard]] http::Request request(const std::vector<Segment>& segments, const DigestContext& context,
                                        const Region& region) const override;

private:
    [[nodiscard]] std::string answer(std::string_view body) const override;

    [[nodiscard]] std::string titleName(const DigestContext& /*context*/) const override { return {}; }

    std::string baseURL_;
    std::string model_;
    std::optional<std::string> apiKey_;
};

} // namespace varnic
