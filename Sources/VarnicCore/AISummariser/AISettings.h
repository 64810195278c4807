#pragma once

#include <array>
#include <string>
#include <string_view>

namespace varnic {

/// Who makes AI summaries. The raw value is the name of the case.
enum class AIProviderKind { anthropic, openAICompatible };

inline constexpr std::array allAIProviderKinds{AIProviderKind::anthropic, AIProviderKind::openAICompatible};

std::string_view rawValue(AIProviderKind kind);

/// The provider's name for the user.
std::string_view title(AIProviderKind kind);

/// One model that the settings offer.
struct AIModelChoice {
    std::string_view id;
    std::string_view name;
    std::string_view note;
};

/// One address that the settings offer for a compatible server.
struct AIServerPreset {
    std::string_view name;
    std::string_view baseURL;
};

/// How the user wants AI summaries made. The key is not in here but in a KeyStore, under `keyAccount`.
struct AISettings {
    static constexpr std::array anthropicModels{
        AIModelChoice{"claude-haiku-5-5", "Claude Haiku 5.5", "Fast and inexpensive — recommended"},
        AIModelChoice{"claude-sonnet-5-5", "Claude Sonnet 5.5", "Sharper summaries, costs more"},
        AIModelChoice{"claude-opus-5-5", "Claude Opus 5.5", "Most capable, slowest and priciest"},
    };
    static constexpr std::string_view defaultAnthropicModel = "claude-haiku-5-5";
    static constexpr std::array compatPresets{
        AIServerPreset{"Ollama on this Mac", "http://localhost:11434/v1"},
        AIServerPreset{"LM Studio on this Mac", "http://localhost:1234/v1"},
        AIServerPreset{"OpenAI", "https://api.openai.com/v1"},
    };
    /// The provider's public API.
    static constexpr std::string_view anthropicBaseURL = "https://api.anthropic.com";

    bool enabled = false;
    AIProviderKind provider = AIProviderKind::anthropic;
    /// A model id.
    std::string anthropicModel{defaultAnthropicModel};
    std::string compatBaseURL{compatPresets.front().baseURL};
    /// The model's name at the compatible server; may be empty.
    std::string compatModel;
    /// Whether a call goes to the provider only when the user asks for it on that call.
    bool askEachTime = true;

    /// The name of an Anthropic model, or the id itself where it is not in the table.
    static std::string nameOfAnthropicModel(const std::string& id);

    /// Reads the stored form: an object with these six keys, all of them there. Throws DecodeError.
    static AISettings decode(std::string_view json);

    /// The stored form, as one line of JSON.
    [[nodiscard]] std::string encode() const;

    /// The chosen model for the user; "your model" where none is named.
    [[nodiscard]] std::string modelName() const;

    /// The account in the key store. Each provider has its own, so that changing back finds the old key.
    [[nodiscard]] std::string keyAccount() const;

    /// Whether the provider is a server on this computer.
    [[nodiscard]] bool staysOnThisMac() const;

    [[nodiscard]] bool needsKey() const { return !staysOnThisMac(); }

    /// Where the transcript will go, as a short phrase.
    [[nodiscard]] std::string destination() const;

    bool operator==(const AISettings&) const = default;
};

} // namespace varnic
