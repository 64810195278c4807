#include "VarnicCore/AISummariser/AISummariser.h"

#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/Summariser/TitleSuggester.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>

namespace varnic {

namespace {

HTTPResponse sent(const HTTPTransport& transport, const http::Request& request, std::stop_token stop) {
    try {
        return transport.send(request, std::move(stop));
    } catch (...) {
        std::rethrow_exception(AIPrompt::mapTransport(std::current_exception()));
    }
}

/// The key in the request's headers; empty where there is none.
std::string_view keyIn(const http::Request& request) {
    constexpr std::string_view scheme = "Bearer ";
    for (const auto& [name, value] : request.headers) {
        if (name == "x-api-key") {
            return value;
        }
        if (name == "Authorization") {
            return std::string_view(value).substr(value.starts_with(scheme) ? scheme.size() : std::size_t{0});
        }
    }
    return {};
}

/// The text without the key, should the provider repeat it: what comes back is shown and stored.
std::string without(std::string_view key, std::string text) {
    for (std::size_t at = text.find(key); !key.empty() && at != std::string::npos; at = text.find(key, at)) {
        text.replace(at, key.size(), "…");
    }
    return text;
}

/// The digest without the key. What is shorter than any provider's key is a word that a local server is given for one,
/// such as its own name, and may well be the call's.
CallDigest without(std::string_view key, CallDigest digest) {
    constexpr std::size_t shortestKey = 16;
    if (key.size() < shortestKey) {
        return digest;
    }
    const auto clean = [key](std::string& text) { text = without(key, std::move(text)); };
    clean(digest.title);
    std::ranges::for_each(digest.summary, clean);
    for (ActionItem& action : digest.actions) {
        clean(action.text);
        if (action.due) {
            clean(*action.due);
        }
    }
    clean(digest.email.subject);
    clean(digest.email.body);
    return digest;
}

/// Whether the sentence repeats what the provider said. In one of ours, the key may be a word such as "key".
bool quotes(const AIError& error) {
    return error.kind() == AIError::Kind::server || error.kind() == AIError::Kind::refused;
}

/// The beginning of what a provider said, which may be a page and more.
std::string beginning(const std::string& text) {
    constexpr int mostLines = 4;
    constexpr std::size_t mostCharacters = 400;
    std::size_t end = 0;
    for (int lines = 0; lines < mostLines && end != std::string::npos; ++lines) {
        end = text.find('\n', lines == 0 ? 0 : end + 1);
    }
    const std::string_view kept = Unicode::firstCharacters(std::string_view(text).substr(0, end), mostCharacters);
    return kept.size() < text.size() ? std::string(Unicode::trim(kept)) + "…" : text;
}

} // namespace

AISummariser::AISummariser(std::shared_ptr<const HTTPTransport> transport) : transport_(std::move(transport)) {}

CallDigest AISummariser::digest(const std::vector<Segment>& segments, const DigestContext& context,
                                std::stop_token stop) const {
    return digest(segments, context, Region::user(), currentDate(), std::move(stop));
}

CallDigest AISummariser::digest(const std::vector<Segment>& segments, const DigestContext& context,
                                const Region& region, Date now, std::stop_token stop) const {
    const http::Request asked = request(segments, context, region);
    const HTTPResponse response = sent(*transport_, asked, std::move(stop));
    try {
        if (response.status != 200) {
            throw AIPrompt::mapStatus(response.status, response.body);
        }
        const std::string text = answer(response.body);
        DigestContext named = context;
        named.themName = titleName(context);
        const std::string fallback = TitleSuggester::title(segments, named, region);
        return without(keyIn(asked), AIPrompt::parse(text, displayName(), fallback, now));
    } catch (const AIError& error) {
        if (!quotes(error)) {
            throw;
        }
        // The sentence, since in the body the key may be spelt in escapes.
        throw error.saying(beginning(without(keyIn(asked), error.what())));
    }
}

} // namespace varnic
