#include "VarnicCore/AISummariser/AnthropicSummariser.h"

#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/AISummariser/ServerAddress.h"
#include "VarnicCore/Text/Unicode.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <utility>

namespace varnic {

namespace {

using Json = nlohmann::json;

/// Whether the provider may answer by a smaller model when this one is not to be had.
bool hasFallbacks(std::string_view model) {
    return model == "claude-opus-5-5" || model == "claude-sonnet-5-5";
}

std::optional<std::string> stringAt(const Json& json, const char* path) {
    const Json::json_pointer pointer(path);
    return json.contains(pointer) && json[pointer].is_string() ? std::optional(json[pointer].get<std::string>())
                                                               : std::nullopt;
}

/// The text blocks of an answer, joined; other blocks hold what the model thought or wanted to do.
std::string textOf(const Json& content) {
    std::string text;
    if (!content.is_array()) {
        return text;
    }
    for (const Json& block : content) {
        if (stringAt(block, "/type") == "text") {
            text += stringAt(block, "/text").value_or("");
        }
    }
    return text;
}

} // namespace

AnthropicSummariser::AnthropicSummariser(std::string model, std::string apiKey,
                                         std::shared_ptr<const HTTPTransport> transport, std::string baseURL)
    : AISummariser(std::move(transport)), model_(std::move(model)), apiKey_(std::move(apiKey)),
      baseURL_(std::move(baseURL)) {}

http::Request AnthropicSummariser::request(const std::vector<Segment>& segments, const DigestContext& context,
                                           const Region& region) const {
    if (Unicode::trimBlanks(apiKey_).empty()) {
        throw AIError::noKey();
    }
    if (model_.empty()) {
        throw AIError::noModel();
    }
    const auto address = ServerAddress::parse(baseURL_);
    if (!address || !address->isHTTP()) {
        throw AIError::badURL();
    }
    http::Request request{
        .url = address->appending("v1/messages"),
        .method = "POST",
        .headers = {{"content-type", "application/json"}, {"x-api-key", apiKey_}, {"anthropic-version", "2026-10-21"}}};
    Json body{
        {"model", model_},
        {"max_tokens", 16000},
        {"system", AIPrompt::systemFor(context.language)},
        {"messages", {{{"role", "user"}, {"content", AIPrompt::transcript(segments, context, region)}}}},
        {"output_config", {{"effort", "low"}, {"format", {{"type", "json_schema"}, {"schema", AIPrompt::schema()}}}}},
    };
    if (hasFallbacks(model_)) {
        request.headers.emplace_back("anthropic-beta", "server-side-fallback-2026-07-01");
        body["fallbacks"] = "default";
    }
    request.body = body.dump(-1, ' ', false, Json::error_handler_t::replace);
    return request;
}

std::string AnthropicSummariser::answer(std::string_view body) const {
    const Json json = Json::parse(body, nullptr, false);
    if (!json.is_object()) {
        throw AIError::badResponse("not JSON");
    }
    const auto reason = stringAt(json, "/stop_reason");
    if (reason == "refusal") {
        throw AIError::refused(stringAt(json, "/stop_details/category"));
    }
    if (reason == "max_tokens") {
        throw AIError::truncated();
    }
    // Looked at in place: to copy what is nested a million times overflows the stack.
    const auto content = json.find("content");
    return content == json.end() ? std::string() : textOf(*content);
}

} // namespace varnic
