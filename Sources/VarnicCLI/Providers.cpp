#include "VarnicCLI/Providers.h"

#include "VarnicCLI/Arguments.h"

#include <fmt/format.h>

namespace varnic::cli {

AIProviderKind providerNamed(const std::string& name) {
    std::string known;
    for (const AIProviderKind kind : allAIProviderKinds) {
        if (name == rawValue(kind)) {
            return kind;
        }
        known += fmt::format("{}{}", known.empty() ? "" : " or ", rawValue(kind));
    }
    throw UsageError("the provider is " + known); // Without the word given: it may be a key.
}

} // namespace varnic::cli
