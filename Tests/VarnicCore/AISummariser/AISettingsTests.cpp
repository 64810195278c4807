#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicCore/AISummariser/AnthropicSummariser.h"
#include "VarnicCore/AISummariser/CompatibleSummariser.h"
#include "VarnicCore/AISummariser/SummariserFactory.h"
#include "VarnicCore/Library/NoteJson.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <vector>

namespace varnic {
namespace {

struct AddressCase {
    const char* url;
    bool isLocal;
    const char* destination;
};

TEST(AISettings, destination_followsTheHostAsWritten) {
    const std::vector<AddressCase> cases{
        {"http://localhost:11434/v1", true, "localhost:11434 — a server on this Mac"},
        {"https://LOCALHOST/v1", true, "LOCALHOST — a server on this Mac"},
        {"http://box.localhost:1", true, "box.localhost:1 — a server on this Mac"},
        {"http://[::1]:80/v1", true, "[::1]:80 — a server on this Mac"},
        {"http://user@127.0.0.1/v1", true, "127.0.0.1 — a server on this Mac"},
        {"http://localhost.example.com:80/v1", false, "localhost.example.com"},
        {"http://localhost:1@example.com/v1", false, "example.com"},
        {"http://127.1/v1", false, "127.1"},
        {"http://2130706433/v1", false, "2130706433"},
        {"localhost:11434/v1", false, "the server you set"},
        {"http://localhost:99999", false, "the server you set"},
        {"http://local host", false, "the server you set"},
        {"http://", false, "the server you set"},
        {"", false, "the server you set"},
    };
    for (const auto& [url, isLocal, destination] : cases) {
        const AISettings settings{.provider = AIProviderKind::openAICompatible, .compatBaseURL = url};
        EXPECT_EQ(settings.staysOnThisMac(), isLocal) << url;
        EXPECT_EQ(settings.needsKey(), !isLocal) << url;
        EXPECT_EQ(settings.destination(), destination) << url;
    }
    EXPECT_TRUE(AISettings{.compatBaseURL = "http://localhost"}.needsKey());
    EXPECT_EQ(AISettings{}.destination(), "Anthropic (api.anthropic.com)");
}

TEST(AISettings, decode_takesBackWhatWasEncodedAndNothingElse) {
    const AISettings settings{.enabled = true,
                              .provider = AIProviderKind::openAICompatible,
                              .anthropicModel = "claude-next",
                              .compatBaseURL = "http://ü",
                              .compatModel = "m",
                              .askEachTime = false};
    EXPECT_EQ(AISettings::decode(settings.encode()), settings);
    EXPECT_EQ(AISettings::decode(AISettings{}.encode()), AISettings{});
    const auto whole = nlohmann::json::parse(settings.encode());
    EXPECT_EQ(whole.size(), 6U);
    for (const auto& [key, value] : whole.items()) {
        nlohmann::json damaged = whole;
        damaged.erase(key);
        EXPECT_THROW(AISettings::decode(damaged.dump()), DecodeError) << key;
        damaged[key] = 1;
        EXPECT_THROW(AISettings::decode(damaged.dump()), DecodeError) << key;
    }
    for (const char* text : {"", "[]", "null", "{", "\xff"}) {
        EXPECT_THROW(AISettings::decode(text), DecodeError) << text;
    }
}

TEST(SummariserFactory, ai_takesTheKeyOfTheChosenProvider) {
    MemoryKeyStore keys;
    keys.setKey("a", "anthropic");
    keys.setKey("o", "openAICompatible");
    AISettings settings;
    EXPECT_EQ(SummariserFactory::ai(settings, keys, nullptr), nullptr);

    settings.enabled = true;
    const auto claude = SummariserFactory::ai(settings, keys, nullptr)->request({}, {}, {});
    EXPECT_EQ(claude.url, "https://api.anthropic.com/v1/messages");
    EXPECT_EQ(claude.headers[1].second, "a");

    settings.provider = AIProviderKind::openAICompatible;
    settings.compatModel = "m";
    const auto small = SummariserFactory::ai(settings, keys, nullptr)->request({}, {}, {});
    EXPECT_EQ(small.headers[1].second, "Bearer o");
    keys.setKey(std::nullopt, "openAICompatible");
    EXPECT_EQ(SummariserFactory::ai(settings, keys, nullptr)->request({}, {}, {}).headers.size(), 1U);
}

struct RequestCase {
    const char* baseURL;
    const char* model;
    const char* key;
    /// The URL of the request, or the name of the error.
    const char* result;
};

/// The URL or the name of the error.
std::string resultOf(const AISummariser& summariser) {
    try {
        return summariser.request({}, {}, {}).url;
    } catch (const AIError& error) {
        return std::string(error.name());
    }
}

TEST(CompatibleSummariser, request_checksAddressThenModelThenKey) {
    const std::vector<RequestCase> cases{
        {" http://localhost:1234/v1// ", "m", "", "http://localhost:1234/v1/chat/completions"},
        {"https://host/v1?tenant=%20a", "m", "k", "https://host/v1/chat/completions?tenant=%20a"},
        {"HTTPS://host", "m", "k", "https://host/chat/completions"},
        {"ftp://localhost", "m", "k", "badURL"},
        {"localhost:1234/v1", "m", "k", "badURL"},
        {"http:/host/v1", "m", "k", "badURL"},
        {"http://ho st", "", "", "badURL"},
        {"https://host", "\t ", "", "noModel"},
        {"https://host", "m", "  ", "noKey"},
        {"http://127.1", "m", "", "noKey"},
    };
    for (const auto& [baseURL, model, key, result] : cases) {
        EXPECT_EQ(resultOf(CompatibleSummariser(baseURL, model, key, nullptr)), result) << baseURL;
    }
}

TEST(AnthropicSummariser, request_checksKeyThenModel) {
    EXPECT_EQ(resultOf(AnthropicSummariser("m", "   ", nullptr)), "noKey");
    EXPECT_EQ(resultOf(AnthropicSummariser("", "", nullptr)), "noKey");
    EXPECT_EQ(resultOf(AnthropicSummariser("", "k", nullptr)), "noModel");
}

TEST(AnthropicSummariser, request_ofALargerModel_allowsFallbacks) {
    for (const AIModelChoice& model : AISettings::anthropicModels) {
        const http::Request request = AnthropicSummariser(std::string(model.id), "k", nullptr).request({}, {}, {});
        const bool expected = model.id != AISettings::defaultAnthropicModel;
        EXPECT_EQ(request.headers.back().first == "anthropic-beta", expected) << model.id;
        EXPECT_EQ(nlohmann::json::parse(request.body).contains("fallbacks"), expected) << model.id;
    }
}

} // namespace
} // namespace varnic
