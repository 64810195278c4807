#include "Varnic/AppModel/AppPlaces.h"
#include "VarnicCLI/Command.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Providers.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/AISummariser.h"
#include "VarnicCore/AISummariser/KeyStore.h"
#include "VarnicCore/AISummariser/ServerAddress.h"
#include "VarnicCore/Models/Wording.h"

#include <fmt/format.h>

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
std::string advice(AIError::Kind kind, const AISettings& settings) {
    switch (kind) {
    case AIError::Kind::noKey:
    case AIError::Kind::badKey:
        return AppPlaces::isScratchByEnvironment()
                   ? "\nBut with VARNIC_DATA_DIR set no key ring is used."
                   : fmt::format("\nHere that is: varnic-cli key set {}", settings.keyAccount());
    case AIError::Kind::noModel:
        return "\nHere that is: --model NAME";
    case AIError::Kind::badURL:
        return "\nHere that is: --server URL";
    case AIError::Kind::offline:
        return settings.staysOnThisMac() ? fmt::format("\nIs the server at {} running?", settings.compatBaseURL) : "";
    default:
        return "";
    }
}

/// A request that cannot be made is told before anything is said of sending.
void checkRequest(AppModel& model, const CallRecord& call) {
    const DigestContext context{.callDate = call.startedAt,
                                .yourName = model.settings.yourName.value(),
                                .themName = call.themName,
                                .source = call.source,
                                .language = call.language};
    const KeyReading key = QCoro::waitFor(model.apiKey.readForRequest());
    try {
        static_cast<void>(model.aiSummariser(key)->request(call.segments, context, model.region));
    } catch (const AIError& error) {
        if (error.kind() == AIError::Kind::noKey && !key.problem.empty()) {
            throw std::runtime_error(Wording::shown(key.problem));
        }
        throw std::runtime_error(error.what() + advice(error.kind(), model.settings.ai.value()));
    }
}

/// Lets the provider summarise the note. Throws std::runtime_error with the user's sentence where that fails.
void askProvider(Application& application, const Note& before) {
    AppModel& model = application.model;
    const Uuid& id = before.id;
    runFlow(application, [&] { return model.runAI(id); });
    if (const auto failed = model.aiError.value().find(id); failed != model.aiError.value().end()) {
        std::string sentence = failed->second;
        for (const AIError& error : {AIError::badKey(), AIError::offline()}) {
            if (failed->second == error.what()) {
                sentence += advice(error.kind(), model.settings.ai.value());
            }
        }
        throw std::runtime_error(sentence);
    }
    const Note* note = model.note(id);
    if (note == nullptr) {
        throw std::runtime_error("The note is gone, so its summary was dropped.");
    }
    if (application.interruption.happened() && note->call->digest == before.call->digest) {
        throw std::runtime_error("Stopped. The note is as it was.");
    }
}

} // namespace

ExitCode summarise(const Arguments& arguments) {
    const AISettings settings = settingsFrom(arguments);
    const std::string& word = arguments.onlyWord("note");
    Application application;
    AppModel& model = application.model;
    model.settings.ai = settings;
    model.settings.yourName = arguments.valueOr("your-name", "");
    model.anthropicURL = arguments.valueOr("server", model.anthropicURL);
    readLibrary(model);
    const Note before = findNote(model.notes(), word);
    if (!model.callActions(before, {}).summarise) {
        throw std::runtime_error("This note has no transcript.");
    }
    checkRequest(model, *before.call);
    Terminal::print(stderr, "Sending the transcript to {} …\n", destination(settings, model.anthropicURL));
    askProvider(application, before);
    saveOrThrow(model, before.id);
    const Note& note = *model.note(before.id);
    if (arguments.has("json")) {
        Terminal::printJson(LibraryStore::encoded(note));
    } else {
        print(note, model.settings.yourName.value(), model.region);
    }
    return ExitCode::success;
}

} // namespace varnic::cli
