#include "VarnicCore/AISummariser/AISummariser.h"

#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/Summariser/TitleSuggester.h"

#include <exception>
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

} // namespace

AISummariser::AISummariser(std::shared_ptr<const HTTPTransport> transport) : transport_(std::move(transport)) {}

CallDigest AISummariser::digest(const std::vector<Segment>& segments, const DigestContext& context,
                                std::stop_token stop) const {
    return digest(segments, context, Region::user(), currentDate(), std::move(stop));
}

CallDigest AISummariser::digest(const std::vector<Segment>& segments, const DigestContext& context,
                                const Region& region, Date now, std::stop_token stop) const {
    const HTTPResponse response = sent(*transport_, request(segments, context, region), std::move(stop));
    if (response.status != 200) {
        throw AIPrompt::mapStatus(response.status, response.body);
    }
    const std::string text = answer(response.body);
    const std::string fallback = TitleSuggester::title(segments, context.callDate, titleName(context), region);
    return AIPrompt::parse(text, displayName(), fallback, now);
}

} // namespace varnic
