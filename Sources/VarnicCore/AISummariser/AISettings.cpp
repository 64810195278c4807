#include "VarnicCore/AISummariser/AISettings.h"

#include "VarnicCore/AISummariser/ServerAddress.h"
#include "VarnicCore/Library/NoteJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace varnic {

namespace {

using Json = nlohmann::json;

AIProviderKind providerFrom(const std::string& raw) {
    const auto found = std::ranges::find(allAIProviderKinds, raw, [](AIProviderKind kind) { return rawValue(kind); });
    if (found == allAIProviderKinds.end()) {
        throw DecodeError("No provider is named " + raw);
    }
    return *found;
}

} // namespace

std::string_view rawValue(AIProviderKind kind) {
    return kind == AIProviderKind::anthropic ? "anthropic" : "openAICompatible";
}

std::string_view title(AIProviderKind kind) {
    return kind == AIProviderKind::anthropic ? "Anthropic Claude" : "OpenAI-compatible";
}

std::string AISettings::nameOfAnthropicModel(const std::string& id) {
    const auto* const found = std::ranges::find(anthropicModels, id, &AIModelChoice::id);
    return found == anthropicModels.end() ? id : std::string(found->name);
}

AISettings AISettings::decode(std::string_view json) {
    try {
        const Json object = Json::parse(json);
        // Strict: get<bool> takes a boolean only, get<std::string> a string only.
        return {.enabled = object.at("enabled").get<bool>(),
                .provider = providerFrom(object.at("provider").get<std::string>()),
                .anthropicModel = object.at("anthropicModel").get<std::string>(),
                .compatBaseURL = object.at("compatBaseURL").get<std::string>(),
                .compatModel = object.at("compatModel").get<std::string>(),
                .askEachTime = object.at("askEachTime").get<bool>()};
    } catch (const Json::exception& error) {
        throw DecodeError(error.what());
    }
}

std::string AISettings::encode() const {
    const Json object{{"enabled", enabled},
                      {"provider", rawValue(provider)},
                      {"anthropicModel", anthropicModel},
                      {"compatBaseURL", compatBaseURL},
                      {"compatModel", compatModel},
                      {"askEachTime", askEachTime}};
    return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string AISettings::modelName() const {
    if (provider == AIProviderKind::anthropic) {
        return nameOfAnthropicModel(anthropicModel);
    }
    return compatModel.empty() ? "your model" : compatModel;
}

std::string AISettings::keyAccount() const {
    return std::string(rawValue(provider));
}

bool AISettings::staysOnThisMac() const {
    if (provider != AIProviderKind::openAICompatible) {
        return false;
    }
    const auto address = ServerAddress::parse(compatBaseURL);
    return address && address->isLocal();
}

std::string AISettings::destination() const {
    if (provider == AIProviderKind::anthropic) {
        return fmt::format("Anthropic ({})", ServerAddress::parse(anthropicBaseURL)->host());
    }
    const auto address = ServerAddress::parse(compatBaseURL);
    if (!address || !address->hasHost()) {
        return "the server you set";
    }
    return address->isLocal() ? address->hostAndPort() + " — a server on this Mac" : address->host();
}

} // namespace varnic
