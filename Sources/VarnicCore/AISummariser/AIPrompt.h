#pragma once

#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Summariser.h"

#include <nlohmann/json_fwd.hpp>

#include <exception>
#include <string>
#include <string_view>
#include <vector>

/// What every AI summariser tells a model, and what its answers mean. Pure functions; any thread.
namespace varnic::AIPrompt {

/// The instructions, for a model whose answers are held to `schema`.
extern const std::string_view system;

/// The same for a call in a language, a tag, which the digest is to be in.
std::string systemFor(std::string_view language);

/// The JSON schema that an answer must fit.
const nlohmann::json& schema();

/// The call as the model reads it: who and when, then the lines with their times. The date is that of the region's
/// zone.
std::string transcript(const std::vector<Segment>& segments, const DigestContext& context,
                       const Region& region = Region::user());

/// The digest in a model's answer, whatever stands around its JSON object; made at `now`. Throws AIError.
CallDigest parse(std::string_view text, std::string_view provider, std::string_view fallbackTitle,
                 Date now = currentDate());

/// What a status other than 200 means, with the message that the body holds or else the usual words for the status.
AIError mapStatus(int status, std::string_view body);

/// The error to throw for a failed send: AIError `offline` for an http::Error that says that the provider could not
/// be reached, any other as it is.
std::exception_ptr mapTransport(const std::exception_ptr& error);

} // namespace varnic::AIPrompt
