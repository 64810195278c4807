#pragma once

#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Date.h"

#include <stop_token>
#include <string>
#include <vector>

namespace varnic {

/// What a summariser is told about a call.
struct DigestContext {
    /// When the call started.
    Date callDate;
    /// The user's name; may be empty.
    std::string yourName;
    /// The other party's name; may be empty.
    std::string themName;
    /// The application that the call came from; may be empty.
    std::string source;
    /// The language tag of the call's words.
    std::string language = "en-US";

    bool operator==(const DigestContext&) const = default;
};

/// What makes a digest of a call. Safe to call from any thread.
class Summariser {
public:
    Summariser() = default;
    Summariser(const Summariser&) = delete;
    Summariser& operator=(const Summariser&) = delete;
    virtual ~Summariser() = default;

    /// Shown to the user and stored as the digest's provider.
    [[nodiscard]] virtual std::string displayName() const = 0;

    /// Whether nothing leaves the machine.
    [[nodiscard]] virtual bool isLocal() const = 0;

    /// Blocks until the digest is made. Throws what the implementation names; ends early when `stop` is requested.
    [[nodiscard]] virtual CallDigest digest(const std::vector<Segment>& segments, const DigestContext& context,
                                            std::stop_token stop) const = 0;
};

} // namespace varnic
