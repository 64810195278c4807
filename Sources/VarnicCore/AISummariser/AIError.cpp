#include "VarnicCore/AISummariser/AIError.h"

#include <fmt/format.h>

#include <array>

namespace varnic {

namespace {

struct Row {
    AIError::Kind kind;
    std::string_view name;
    /// Empty where the sentence is made of what the error carries.
    std::string_view sentence;
};

/// In the order of the kinds.
constexpr std::array rows{
    Row{AIError::Kind::refused, "refused", ""},
    Row{AIError::Kind::server, "server", ""},
    Row{AIError::Kind::badResponse, "badResponse", ""},
    Row{AIError::Kind::noKey, "noKey", "Add your API key in Settings › Summaries."},
    Row{AIError::Kind::badKey, "badKey", "The provider didn’t accept your API key."},
    Row{AIError::Kind::noModel, "noModel", "Pick a model in Settings › Summaries."},
    Row{AIError::Kind::badURL, "badURL", "The server address in Settings › Summaries isn’t a valid URL."},
    Row{AIError::Kind::rateLimited, "rateLimited", "The provider is rate-limiting your key. Try again in a minute."},
    Row{AIError::Kind::overloaded, "overloaded", "The provider is busy right now. Try again shortly."},
    Row{AIError::Kind::truncated, "truncated", "The summary was cut off. Try a larger model."},
    Row{AIError::Kind::offline, "offline", "Couldn’t reach the provider — you seem to be offline."},
};

const Row& rowOf(AIError::Kind kind) {
    return rows.at(static_cast<std::size_t>(kind));
}

} // namespace

AIError AIError::refused(const std::optional<std::string>& category) {
    return {Kind::refused,
            fmt::format("The model declined to summarise this call{}.", category ? " (" + *category + ")" : "")};
}

AIError AIError::server(int status, const std::string& message) {
    return {Kind::server, fmt::format("The provider answered {}: {}", status, message)};
}

AIError AIError::badResponse(const std::string& detail) {
    return {Kind::badResponse, fmt::format("The provider’s answer couldn’t be read ({}).", detail)};
}

AIError AIError::of(Kind kind) {
    return {kind, std::string(rowOf(kind).sentence)};
}

std::string_view AIError::name() const {
    return rowOf(kind_).name;
}

} // namespace varnic
