#pragma once

#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicCore/AISummariser/AISummariser.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// Digests by Anthropic's Messages API.
class AnthropicSummariser final : public AISummariser {
public:
    AnthropicSummariser(std::string model, std::string apiKey, std::shared_ptr<const HTTPTransport> transport,
                        std::string baseURL = std::string(AISettings::anthropicBaseURL));

    /// The model's name for the user, or its id.
    [[nodiscard]] std::string displayName() const override { return AISettings::nameOfAnthropicModel(model_); }

    /// Throws AIError `noKey`, then `noModel`, then `badURL`.
    [[nodiscard]] http::Request request(const std::vector<Segment>& segments, const DigestContext& context,
                                        const Region& region) const override;

private:
    [[nodiscard]] std::string answer(std::string_view body) const override;

    [[nodiscard]] std::string titleName(const DigestContext& context) const override { return context.themName; }

    std::string model_;
    std::string apiKey_;
    std::string baseURL_;
};

} // namespace varnic
