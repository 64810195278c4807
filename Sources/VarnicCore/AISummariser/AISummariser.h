#pragma once

#include "VarnicCore/AISummariser/HTTPTransport.h"
#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Summariser.h"

#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// Has a model make the digest: one request, one answer, no second try. The two providers differ in the form of both.
class AISummariser : public Summariser {
public:
    explicit AISummariser(std::shared_ptr<const HTTPTransport> transport);

    /// False, also for a server on this computer.
    [[nodiscard]] bool isLocal() const final { return false; }

    /// The request for a call, with the day of the call in the region's zone. Throws AIError for a setting that cannot
    /// work.
    [[nodiscard]] virtual http::Request request(const std::vector<Segment>& segments, const DigestContext& context,
                                                const Region& region) const = 0;

    /// For this user, now. Throws AIError, http::Error and http::Cancellation.
    [[nodiscard]] CallDigest digest(const std::vector<Segment>& segments, const DigestContext& context,
                                    std::stop_token stop) const final;

    /// The same for another region and time.
    [[nodiscard]] CallDigest digest(const std::vector<Segment>& segments, const DigestContext& context,
                                    const Region& region, Date now, std::stop_token stop) const;

private:
    /// The model's text in the body of a response with status 200. Throws AIError.
    [[nodiscard]] virtual std::string answer(std::string_view body) const = 0;

    /// The other party's name for the title that stands in for a missing one.
    [[nodiscard]] virtual std::string titleName(const DigestContext& context) const = 0;

    std::shared_ptr<const HTTPTransport> transport_;
};

} // namespace varnic
