#include "VarnicCore/AISummariser/CompatibleSummariser.h"

#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/AISummariser/ServerAddress.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <utility>

namespace varnic {

namespace {

using Json = nlohmann::json;

ServerAddress checkedAddress(std::string_view baseURL) {
    const auto address =
        ServerAddress::parse(Unicode::trim(Unicode::trim(baseURL), [](char32_t c) { return c == U'/'; }));
    if (!address || !address->isHTTP()) {
        throw AIError::badURL();
    }
    return *address;
}

bool isBlank(const std::string& text) {
    return Unicode::trimBlanks(text).empty();
}

} // namespace

CompatibleSummariser::CompatibleSummariser(std::string baseURL, std::string model, std::optional<std::string> apiKey,
                                           std::shared_ptr<const HTTPTransport> transport)
    : AISummariser(std::move(transport)), baseURL_(std::move(baseURL)), model_(std::move(model)),
      apiKey_(std::move(apiKey)) {}

http::Request CompatibleSummariser::request(const std::vector<Segment>& segments, const DigestContext& context,
                                            const Region& region) const {
    const ServerAddress address = checkedAddress(baseURL_);
    if (isBlank(model_)) {
        throw AIError::noModel();
    }
    const std::string key = apiKey_.value_or("");
    if (!address.isLocal() && isBlank(key)) {
        throw AIError::noKey();
    }
    http::Request request{.url = address.appending("chat/completions"),
                          .method = "POST",
                          .headers = {{"Content-Type", "application/json"}}};
    if (!key.empty()) {
        request.headers.emplace_back("Authorization", "Bearer " + key);
    }
    const Json body{
        {"model", model_},
        {"messages",
         {{{"role", "system"},
           {"content", fmt::format("{}\nReply with the JSON object only.", AIPrompt::systemFor(context.language))}},
          {{"role", "user"}, {"content", AIPrompt::transcript(segments, context, region)}}}},
        {"stream", false},
    };
    request.body = body.dump(-1, ' ', false, Json::error_handler_t::replace);
    return request;
}

std::string CompatibleSummariser::answer(std::string_view body) const {
    const Json json = Json::parse(body, nullptr, false);
    const Json::json_pointer content("/choices/0/message/content");
    // The pointer's index would also match a key of an object, but `choices` must be an array.
    if (!json.is_object() || !json.contains("choices") || !json["choices"].is_array() || !json.contains(content) ||
        !json[content].is_string()) {
        throw AIError::badResponse("no message");
    }
    // Looked at in place: to copy what is nested a million times overflows the stack.
    const Json& choice = json["choices"][0];
    if (const auto reason = choice.find("finish_reason"); reason != choice.end() && *reason == "length") {
        throw AIError::truncated();
    }
    return json[content].get<std::string>();
}

} // namespace varnic
