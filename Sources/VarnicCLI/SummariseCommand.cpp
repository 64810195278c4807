#include "VarnicCLI/Command.h"
#include "VarnicCLI/Interruption.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Providers.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/ServerAddress.h"
#include "VarnicCore/AISummariser/SummariserFactory.h"
#include "VarnicCore/AISummariser/URLSessionTransport.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Text/Wording.h"
#include "VarnicPlatform/KeyStore/KeychainStore.h"

#include <fmt/format.h>

#include <memory>
#include <optional>
#include <stdexcept>

namespace varnic::cli {

namespace {

/// What the options say; a server alone is a compatible one.
AISettings settingsFrom(const Arguments& arguments) {
    const auto server = arguments.value("server");
    const auto kind = server ? AIProviderKind::openAICompatible : AIProviderKind::anthropic;
    AISettings settings{.enabled = true,
                        .provider = providerNamed(arguments.valueOr("provider", std::string(rawValue(kind))))};
    if (settings.provider == AIProviderKind::anthropic) {
        settings.anthropicModel = arguments.valueOr("model", settings.anthropicModel);
    } else {
        settings.compatModel = arguments.valueOr("model", "");
        settings.compatBaseURL = server.value_or(settings.compatBaseURL);
    }
    return settings;
}

/// Where the transcript goes: a gateway in place of the provider's own API is named.
std::string destination(const AISettings& settings, const std::string& anthropicURL) {
    if (settings.provider == AIProviderKind::anthropic && anthropicURL != AISettings::anthropicBaseURL) {
        const auto address = ServerAddress::parse(anthropicURL);
        return address && address->hasHost() ? address->hostAndPort() : "the server you set";
    }
    return Wording::shown(settings.destination());
}

/// What to do about a failure on the command line; empty where the sentence says it all.
std::string advice(const AIError& error, const AISettings& settings) {
    switch (error.kind()) {
    case AIError::Kind::noKey:
    case AIError::Kind::badKey:
        return fmt::format("\nHere that is: varnic-cli key set {}", settings.keyAccount());
    case AIError::Kind::noModel:
        return "\nHere that is: --model NAME";
    case AIError::Kind::badURL:
        return "\nHere that is: --server URL";
    default:
        return "";
    }
}

CallDigest digestOf(const CallRecord& call, const std::string& yourName, const AISettings& settings,
                    const std::string& anthropicURL) {
    const Interruption interruption; // Ahead of the key ring, which starts a thread.
    const auto summariser =
        SummariserFactory::ai(settings, KeychainStore(), std::make_shared<URLSessionTransport>(), anthropicURL);
    const DigestContext context{
        .callDate = call.startedAt, .yourName = yourName, .themName = call.themName, .source = call.source};
    try {
        // A request that cannot be made is told before anything is said of sending.
        static_cast<void>(summariser->request(call.segments, context, Region::user()));
        fmt::print(stderr, "Sending the transcript to {} …\n", destination(settings, anthropicURL));
        return summariser->digest(call.segments, context, interruption.token());
    } catch (const Cancellation&) {
        throw std::runtime_error("Stopped. The note is as it was.");
    } catch (const AIError& error) {
        throw std::runtime_error(error.what() + advice(error, settings));
    }
}

/// The note with the digest. A title that the user chose stays.
Note withDigest(Note note, const CallDigest& digest) {
    const std::optional<CallDigest> old = note.call ? note.call->digest : std::nullopt;
    const bool replaceTitle = note.title.empty() || (old && old->title == note.title);
    NoteEditor::apply(digest, note, replaceTitle, currentDate());
    return note;
}

} // namespace

ExitCode summarise(const Arguments& arguments) {
    const AISettings settings = settingsFrom(arguments);
    const std::string anthropicURL = arguments.valueOr("server", std::string(AISettings::anthropicBaseURL));
    const std::string yourName = arguments.valueOr("your-name", "");
    LibraryStore store(libraryFolder());
    const Note before = findNote(store, arguments.onlyWord("note"));
    if (!before.call || before.call->segments.empty()) {
        throw std::runtime_error("This note has no transcript.");
    }
    const CallDigest digest = digestOf(*before.call, yourName, settings, anthropicURL);

    // As it is now: the user may have edited it in the meantime.
    const auto current = store.load(before.id, currentDate());
    if (!current) {
        throw std::runtime_error("The note is gone, so its summary was dropped.");
    }
    const Note note = withDigest(*current, digest);
    store.save(note);
    if (arguments.has("json")) {
        fmt::print("{}\n", LibraryStore::encoded(note));
    } else {
        print(note, yourName, Region::user());
    }
    return ExitCode::success;
}

} // namespace varnic::cli
