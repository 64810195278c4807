#pragma once

#include "VarnicCore/AISummariser/AISettings.h"

#include <string>

namespace varnic::cli {

/// The provider of this name, as it stands in settings. Throws UsageError with all names, but not the word,
/// for another.
AIProviderKind providerNamed(const std::string& name);

} // namespace varnic::cli
