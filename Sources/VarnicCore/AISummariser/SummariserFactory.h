#pragma once

#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicCore/AISummariser/AISummariser.h"
#include "VarnicCore/AISummariser/KeyStore.h"

#include <memory>
#include <optional>
#include <string>

namespace varnic::SummariserFactory {

/// The summariser that the settings ask for, with a key if there is one, for one run; null where AI summaries are off.
/// `anthropicBaseURL` may name a gateway in place of the public API.
std::unique_ptr<AISummariser> ai(const AISettings& settings, std::optional<std::string> key,
                                 std::shared_ptr<const HTTPTransport> transport,
                                 const std::string& anthropicBaseURL = std::string(AISettings::anthropicBaseURL));

/// The same with its key from the store, which may have to be waited for.
std::unique_ptr<AISummariser> ai(const AISettings& settings, const KeyStore& keys,
                                 std::shared_ptr<const HTTPTransport> transport,
                                 const std::string& anthropicBaseURL = std::string(AISettings::anthropicBaseURL));

} // namespace varnic::SummariserFactory
