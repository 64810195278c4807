#include "VarnicCore/AISummariser/ServerModels.h"

#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/ServerAddress.h"
#include "VarnicCore/AISummariser/StatusText.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <utility>

namespace varnic {

namespace {

using Json = nlohmann::json;
using Kind = ServerAnswer::Kind;

/// For a server that may have to load itself first.
constexpr auto patience = std::chrono::seconds(10);

std::string_view trimmed(std::string_view address) {
    return Unicode::trim(Unicode::trim(address), [](char32_t c) { return c == U'/'; });
}

ServerAnswer failure(const http::Error& error) {
    switch (error.kind()) {
    case http::Error::Kind::timedOut:
        return {.kind = Kind::timedOut, .models = {}, .sentence = "The server doesn’t answer in time."};
    case http::Error::Kind::notHTTP:
        return {.kind = Kind::notHTTP, .models = {}, .sentence = "Something answers there, but no web server does."};
    case http::Error::Kind::cannotConnectToHost: // whose own sentence says no more
        return {.kind = Kind::unreachable, .models = {}, .sentence = "The server can’t be reached."};
    default:
        return {.kind = Kind::unreachable,
                .models = {},
                .sentence = fmt::format("The server can’t be reached. {}", error.what())};
    }
}

/// The names in the list that the interface's GET /models gives: {"data": [{"id": NAME, …}, …]}.
std::optional<std::vector<std::string>> modelsIn(const std::string& body) {
    const Json json = Json::parse(body, nullptr, false);
    if (!json.is_object() || !json.contains("data")) {
        return std::nullopt;
    }
    std::vector<std::string> models;
    // A server without a model gives null for a list.
    if (json["data"].is_null()) {
        return models;
    }
    if (!json["data"].is_array()) {
        return std::nullopt;
    }
    for (const Json& model : json["data"]) {
        if (model.is_object() && model.contains("id") && model["id"].is_string()) {
            models.push_back(model["id"].get<std::string>());
        }
    }
    return models;
}

ServerAnswer answerIn(const HTTPResponse& response, bool hasKey) {
    constexpr int ok = 200;
    constexpr int unauthorized = 401;
    constexpr int forbidden = 403;
    if (response.status == unauthorized || response.status == forbidden) {
        return {.kind = Kind::refused,
                .models = {},
                .sentence = hasKey ? "The server doesn’t accept the key." : "The server wants a key."};
    }
    if (response.status != ok) {
        return {.kind = Kind::notAnAPI,
                .models = {},
                .sentence =
                    fmt::format("A server answers there, but not as a model server does ({} {}). Most addresses "
                                "end in /v1.",
                                response.status, statusText(response.status))};
    }
    auto models = modelsIn(response.body);
    if (!models) {
        return {.kind = Kind::notAnAPI,
                .models = {},
                .sentence = "A server answers there, but with a page and not with a list of models. Most addresses end "
                            "in /v1."};
    }
    std::string sentence = "The server answers, but has no model yet.";
    if (!models->empty()) {
        sentence = models->size() == 1 ? "The server answers and has one model."
                                       : fmt::format("The server answers and has {} models.", models->size());
    }
    return {.kind = Kind::models, .models = std::move(*models), .sentence = std::move(sentence)};
}

} // namespace

std::optional<std::string> ServerModels::problemOf(std::string_view address) {
    const std::string_view text = trimmed(address);
    if (text.empty()) {
        return "No address is given.";
    }
    if (Unicode::any(text, Unicode::isSpace)) {
        return "An address has no blanks in it.";
    }
    if (!text.starts_with("http://") && !text.starts_with("https://")) {
        return "An address begins with http:// or https://.";
    }
    const auto parsed = ServerAddress::parse(text);
    if (!parsed || !parsed->isHTTP()) {
        return "This is no address of a server.";
    }
    if (parsed->hasUser()) {
        return "Leave the name and the password out of the address. A key has a field of its own.";
    }
    return std::nullopt;
}

ServerAnswer ServerModels::ask(std::string_view address, const std::optional<std::string>& key,
                               const HTTPTransport& transport, std::stop_token stop) {
    if (auto problem = problemOf(address)) {
        return {.kind = Kind::badAddress, .models = {}, .sentence = std::move(*problem)};
    }
    http::Request request{.url = ServerAddress::parse(trimmed(address))->appending("models"),
                          .headers = {{"Accept", "application/json"}},
                          .timeout = patience};
    const bool hasKey = key && !Unicode::trim(*key).empty();
    if (hasKey) {
        request.headers.emplace_back("Authorization", "Bearer " + *key);
    }
    try {
        return answerIn(transport.send(request, std::move(stop)), hasKey);
    } catch (const http::Error& error) {
        return failure(error);
    } catch (const AIError& error) {
        const bool isHTTP = std::string_view(error.what()).find("No HTTP response") == std::string_view::npos;
        return isHTTP ? ServerAnswer{.kind = Kind::notAnAPI, .models = {}, .sentence = error.what()}
                      : failure(http::Error(http::Error::Kind::notHTTP, ""));
    }
}

} // namespace varnic
