#include "Varnic/SelfTest/Persistence.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/SelfTest/Checks.h"
#include "Varnic/SelfTest/UserJourney.h"
#include "VarnicCore/Fixtures/DemoCall.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace varnic {

namespace {

bool lacksSummary(const Note& note) {
    return note.call && !note.call->segments.empty() && !note.call->digest;
}

/// The call that the journey began with.
const Note* firstCall(const SharedNotes& notes) {
    const Note* first = nullptr;
    for (const Note& note : notes) {
        if (note.call && (first == nullptr || note.call->startedAt < first->call->startedAt)) {
            first = &note;
        }
    }
    return first;
}

bool hasLearntCard(const Note& note) {
    return note.title == UserJourney::vocabularyTitle &&
           std::ranges::any_of(note.blocks, [](const Block& block) { return block.card && block.card->box > 1; });
}

} // namespace

QCoro::Task<> checkPersistence(AppModel& model, Checks& checks) {
    co_await model.load();
    const SharedNotes& notes = model.notes();
    checks.check(!notes.empty(), fmt::format("the library reloads ({} notes)", notes.size()));
    checks.check(std::ranges::none_of(notes, lacksSummary), "every call kept its summary");
    const Note* call = firstCall(notes);
    checks.check(call != nullptr && call->call->segments.size() == DemoCall::lines().size() &&
                     call->call->themName == UserJourney::themName,
                 "the transcript reloads intact");
    checks.check(std::ranges::any_of(notes, hasLearntCard), "flashcard progress reloads");
    const AppSettings& settings = model.settings;
    checks.check(settings.consentSeen.value() && settings.yourName.value() == UserJourney::yourName,
                 "consent and your name are remembered");
    const AISettings& ai = settings.ai.value();
    checks.check(ai.provider == AIProviderKind::openAICompatible && ai.compatModel == UserJourney::localModel,
                 "AI settings are remembered");
    checks.check(settings.hotkey.value() == HotkeyChoice::ctrlOptCmdR, "the shortcut choice is remembered");
}

} // namespace varnic
