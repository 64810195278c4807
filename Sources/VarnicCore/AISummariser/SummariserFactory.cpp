#include "VarnicCore/AISummariser/SummariserFactory.h"

#include "VarnicCore/AISummariser/AnthropicSummariser.h"
#include "VarnicCore/AISummariser/CompatibleSummariser.h"

#include <utility>

namespace varnic {

std::unique_ptr<AISummariser> SummariserFactory::ai(const AISettings& settings, std::optional<std::string> key,
                                                    std::shared_ptr<const HTTPTransport> transport,
                                                    const std::string& anthropicBaseURL) {
    if (!settings.enabled) {
        return nullptr;
    }
    if (settings.provider == AIProviderKind::openAICompatible) {
        return std::make_unique<CompatibleSummariser>(settings.compatBaseURL, settings.compatModel, std::move(key),
                                                      std::move(transport));
    }
    return std::make_unique<AnthropicSummariser>(settings.anthropicModel, key.value_or(""), std::move(transport),
                                                 anthropicBaseURL);
}

std::unique_ptr<AISummariser> SummariserFactory::ai(const AISettings& settings, const KeyStore& keys,
                                                    std::shared_ptr<const HTTPTransport> transport,
                                                    const std::string& anthropicBaseURL) {
    return settings.enabled ? ai(settings, keys.key(settings.keyAccount()), std::move(transport), anthropicBaseURL)
                            : nullptr;
}

} // namespace varnic
