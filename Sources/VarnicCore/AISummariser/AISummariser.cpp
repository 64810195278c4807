#include "VarnicCore/AISummariser/AISummariser.h"

#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/Summariser/TitleSuggester.h"

#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>

namespace varnic {

namespace {

HTTPResponse sent(const HTTPTransport& transport, const HTTPRequest& request, std::stop_token stop) {
    try {
        return transport.send(request, std::move(stop));
    } catch (...) {
        std::rethrow_exception(AIPrompt::mapTransport(std::current_exception()));
    }
}

/// The text without the request's key, should the provider repeat it: what comes back is shown and stored.
std::string withoutKey(std::string text, const HTTPRequest& request) {
    constexpr std::string_view scheme = "Bearer ";
    for (const auto& [name, value] : request.headers) {
        if (name != "x-api-key" && name != "Authorization") {
            continue;
        }
        const std::string_view key =
            std::string_view(value).substr(value.starts_with(scheme) ? scheme.size() : std::size_t{0});
        for (std::size_t at = text.find(key); !key.empty() && at != std::string::npos; at = text.find(key, at)) {
            text.replace(at, key.size(), "…");
        }
    }
    return text;
}

} // namespace

AISummariser::AISummariser(std::shared_ptr<const HTTPTransport> transport) : transport_(std::move(transport)) {}

CallDigest AISummariser::digest(const std::vector<Segment>& segments, const DigestContext& context,
                                std::stop_token stop) const {
    return digest(segments, context, Region::user(), currentDate(), std::move(stop));
}

CallDigest AISummariser::digest(const std::vector<Segment>& segments, const DigestContext& context,
                                const Region& region, Date now, std::stop_token stop) const {
    const HTTPRequest asked = request(segments, context, region);
    const HTTPResponse response = sent(*transport_, asked, std::move(stop));
    if (response.status != 200) {
        throw AIPrompt::mapStatus(response.status, withoutKey(response.body, asked));
    }
    const std::string text = answer(response.body);
    const std::string fallback = TitleSuggester::title(segments, context.callDate, titleName(context), region);
    return AIPrompt::parse(text, displayName(), fallback, now);
}

} // namespace varnic
