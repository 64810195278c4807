#include "VarnicCore/AISummariser/AIPrompt.h"

#include "VarnicCore/AISummariser/HTTPTransport.h"
#include "VarnicCore/AISummariser/StatusText.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <optional>

namespace varnic::AIPrompt {

namespace {

using Json = nlohmann::json;

/// An object with these properties, all of them required in this order, and no others.
Json closedObject(const nlohmann::ordered_json& properties) {
    Json required = Json::array();
    for (const auto& property : properties.items()) {
        required.push_back(property.key());
    }
    return {{"type", "object"},
            {"additionalProperties", false},
            {"required", std::move(required)},
            {"properties", Json(properties)}};
}

std::string isoDay(Date date, const Region& region) {
    const std::chrono::year_month_day day(region.day(date));
    return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                       static_cast<unsigned>(day.day()));
}

/// From the first "{" to the last "}" after it, else the whole text.
std::string_view jsonIn(std::string_view text) {
    const std::size_t first = text.find('{');
    const std::size_t last = text.rfind('}');
    const bool holdsObject = first != std::string_view::npos && last != std::string_view::npos && last > first;
    return holdsObject ? text.substr(first, last - first + 1) : text;
}

std::string trimmed(const std::string& text) {
    return std::string(Unicode::trim(text));
}

/// The value under a key; null where there is none. Throws Json::exception for one of another type.
template <typename Value>
std::optional<Value> optional(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? std::nullopt : std::optional(found->get<Value>());
}

/// What a model writes, before any of it is judged.
struct Wire {
    struct Action {
        std::string text;
        std::optional<std::string> owner;
        std::optional<std::string> due;
    };

    std::optional<std::string> title;
    std::vector<std::string> summary;
    std::vector<Action> actions;
    std::optional<std::string> emailSubject;
    std::optional<std::string> emailBody;
};

void from_json(const Json& json, Wire::Action& action) { // NOLINT(readability-identifier-naming): the library's name
    action = {.text = json.at("text").get<std::string>(),
              .owner = optional<std::string>(json, "owner"),
              .due = optional<std::string>(json, "due")};
}

/// Throws Json::exception.
Wire decodeWire(std::string_view text) {
    const Json object = Json::parse(text);
    static_cast<void>(object.get_ref<const Json::object_t&>()); // Throws for anything but an object.
    return {.title = optional<std::string>(object, "title"),
            .summary = optional<std::vector<std::string>>(object, "summary").value_or(std::vector<std::string>{}),
            .actions = optional<std::vector<Wire::Action>>(object, "actions").value_or(std::vector<Wire::Action>{}),
            .emailSubject = optional<std::string>(object, "email_subject"),
            .emailBody = optional<std::string>(object, "email_body")};
}

std::vector<std::string> sentences(const std::vector<std::string>& summary) {
    std::vector<std::string> kept;
    for (const std::string& entry : summary) {
        if (std::string sentence = trimmed(entry); !sentence.empty()) {
            kept.push_back(std::move(sentence));
        }
    }
    return kept;
}

std::vector<ActionItem> actionItems(const std::vector<Wire::Action>& actions) {
    std::vector<ActionItem> items;
    for (const Wire::Action& action : actions) {
        ActionItem item{.text = trimmed(action.text)};
        if (item.text.empty()) {
            continue;
        }
        item.owner = speakerFrom(Unicode::lowerCased(action.owner.value_or("")));
        if (const auto due = Unicode::trimBlanks(action.due ? *action.due : std::string_view()); !due.empty()) {
            item.due = due;
        }
        items.push_back(std::move(item));
    }
    return items;
}

/// The message that a provider put into the body of a failure.
std::optional<std::string> messageIn(std::string_view body) {
    const Json json = Json::parse(body, nullptr, false);
    if (!json.is_object()) {
        return std::nullopt;
    }
    for (const auto* path : {"/error/message", "/message"}) {
        if (const Json::json_pointer pointer(path); json.contains(pointer) && json[pointer].is_string()) {
            return json[pointer].get<std::string>();
        }
    }
    return std::nullopt;
}

bool meansOffline(http::Error::Kind kind) {
    switch (kind) {
    case http::Error::Kind::notConnectedToInternet:
    case http::Error::Kind::networkConnectionLost:
    case http::Error::Kind::cannotFindHost:
    case http::Error::Kind::cannotConnectToHost:
    case http::Error::Kind::timedOut:
    case http::Error::Kind::dnsLookupFailed:
        return true;
    default:
        return false;
    }
}

} // namespace

const std::string_view system =
    "You turn call transcripts into notes. The transcript has two sides: lines starting with \"You:\" "
    "were said by the person who recorded the call; lines starting with \"Them:\" were said by the "
    "other people on the call. Write in plain, concise English. Do not invent facts that are not in "
    "the transcript.\n"
    "Return JSON with: \"title\" (a short topic title, at most 6 words, no date), \"summary\" (3 to 7 "
    "short sentences covering decisions, numbers and open questions), \"actions\" (concrete "
    "follow-ups; \"text\" is an imperative task, \"owner\" is \"you\", \"them\" or \"both\", \"due\" is the "
    "deadline as said — e.g. \"Friday\" — or an empty string), \"email_subject\" and \"email_body\" (a "
    "short, friendly follow-up email from You to Them that recaps and lists next steps; sign off "
    "with the sender's name if given).";

std::string systemFor(std::string_view language) {
    std::string text(system);
    if (!Language::isEnglish(language)) {
        constexpr std::string_view written = "plain, concise English";
        text.replace(text.find(written), written.size(),
                     fmt::format("plain, concise {}", Language::name(Language::bare(language), "en")));
    }
    return text;
}

const Json& schema() {
    static const Json text{{"type", "string"}};
    static const Json owner{{"type", "string"}, {"enum", {"you", "them", "both"}}};
    static const Json tree = closedObject({
        {"title", text},
        {"summary", {{"type", "array"}, {"items", text}}},
        {"actions", {{"type", "array"}, {"items", closedObject({{"text", text}, {"owner", owner}, {"due", text}})}}},
        {"email_subject", text},
        {"email_body", text},
    });
    return tree;
}

std::string transcript(const std::vector<Segment>& segments, const DigestContext& context, const Region& region) {
    std::string text = fmt::format("Call: {}, {}\n", context.source, isoDay(context.callDate, region));
    if (!context.yourName.empty()) {
        text += fmt::format("Sender's name: {}\n", context.yourName);
    }
    if (!context.themName.empty()) {
        text += fmt::format("Other side: {}\n", context.themName);
    }
    for (const Segment& segment : segments) {
        text += fmt::format("\n[{}] {}: {}", Clock::stamp(segment.start),
                            segment.speaker == Speaker::you ? "You" : "Them", segment.text);
    }
    return text;
}

CallDigest parse(std::string_view text, std::string_view provider, std::string_view fallbackTitle, Date now) {
    Wire wire;
    try {
        wire = decodeWire(jsonIn(Unicode::trim(text)));
    } catch (const Json::exception&) {
        throw AIError::badResponse("not the JSON Varnic asked for");
    }
    std::vector<std::string> summary = sentences(wire.summary);
    if (summary.empty() && wire.actions.empty()) {
        throw AIError::badResponse("empty summary");
    }
    std::string title = trimmed(wire.title.value_or(""));
    return {.title = title.empty() ? std::string(fallbackTitle) : std::move(title),
            .summary = std::move(summary),
            .actions = actionItems(wire.actions),
            .email = {.subject = wire.emailSubject.value_or("Follow-up"), .body = wire.emailBody.value_or("")},
            .provider = std::string(provider),
            .isLocal = false,
            .createdAt = now};
}

AIError mapStatus(int status, std::string_view body) {
    switch (status) {
    case 401:
    case 403:
        return AIError::badKey();
    case 429:
        return AIError::rateLimited();
    case 503:
    case 529:
        return AIError::overloaded();
    default:
        return AIError::server(status, messageIn(body).value_or(std::string(statusText(status))));
    }
}

std::exception_ptr mapTransport(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const http::Error& failure) {
        return meansOffline(failure.kind()) ? std::make_exception_ptr(AIError::offline()) : error;
    } catch (...) {
        return error;
    }
}

} // namespace varnic::AIPrompt
