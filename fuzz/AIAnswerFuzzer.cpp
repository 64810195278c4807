#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicCore/AISummariser/AnthropicSummariser.h"
#include "VarnicCore/AISummariser/CompatibleSummariser.h"
#include "VarnicCore/AISummariser/FixedTransport.h"
#include "VarnicCore/Library/NoteJson.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

using namespace varnic;

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// A digest has something in it and can be stored; anything else is an AIError.
template <typename Action>
void requireDigest(Action action) {
    try {
        const CallDigest digest = action();
        require(!digest.title.empty() && !digest.isLocal);
        require(decode<CallDigest>(jsonText(encode(digest))) == digest);
    } catch (const AIError& error) {
        require(!std::string_view(error.what()).empty());
    }
}

} // namespace

/// The bytes are a model's text, the body of a failure, and the body of both providers' answers; a server's address,
/// too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const Date now(std::chrono::days(20'000));
    requireDigest([&] { return AIPrompt::parse(text, "P", "F", now); });
    const int status = size == 0 ? 500 : 300 + 2 * data[0];
    require(!std::string_view(AIPrompt::mapStatus(status, text).what()).empty());

    const auto transport = std::make_shared<FixedTransport>(HTTPResponse{.status = 200, .body = text});
    requireDigest([&] { return AnthropicSummariser("m", "k", transport).digest({}, {}, {}, now, {}); });
    requireDigest(
        [&] { return CompatibleSummariser("http://localhost", "m", {}, transport).digest({}, {}, {}, now, {}); });
    const AISettings settings{.provider = AIProviderKind::openAICompatible, .compatBaseURL = text};
    require(settings.needsKey() != settings.staysOnThisMac() && !settings.destination().empty());
    return 0;
}
