#include "Varnic/SelfTest/UserJourney.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/SelfTest/Checks.h"
#include "VarnicCore/Library/LibraryStore.h"

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <variant>

namespace varnic {

using namespace std::chrono_literals;

UserJourney::UserJourney(AppModel& model, AppDelegate& shell, const StandIns& standIns, Checks& checks)
    : model_(model), shell_(shell), standIns_(standIns), checks_(checks) {}

QCoro::Task<> UserJourney::run() {
    const bool isFresh = co_await openLibrary();
    if (!isFresh) {
        co_return;
    }
    co_await prepareCall();
    co_await recordFirstCall();
    const bool isThere = co_await stopAndSummarise();
    if (!isThere) {
        co_return;
    }
    co_await checkFirstCall();
    shareEmail();
    co_await summariseByAI();
    exportCall();
    co_await keepCards();
    co_await recordFurtherCalls();
    checkSections();
    leaveSettings();
}

/// A folder with notes is left as it is: they may be somebody's.
QCoro::Task<bool> UserJourney::openLibrary() {
    co_await model_.readLibrary();
    const auto isFresh = [this] {
        return model_.notes().empty() && !model_.isUnreadable.value() && !model_.loadProblem.value();
    };
    if (isFresh()) {
        // Takes up recordings of dead programs, too.
        co_await model_.load();
    }
    co_return checks_.check(isFresh(), "a fresh library is empty", fmt::format("notes={}", model_.notes().size()));
}

/// What a later start is to find again.
void UserJourney::leaveSettings() {
    AISettings ai = model_.settings.ai.value();
    ai.provider = AIProviderKind::openAICompatible;
    ai.compatBaseURL = AISettings::compatPresets.front().baseURL;
    ai.compatModel = localModel;
    model_.settings.ai = ai;
    model_.settings.hotkey = HotkeyChoice::ctrlOptCmdR;
    model_.flushSaves();
    fmt::print(stdout, "INFO {} notes in the library\n", model_.notes().size());
}

QCoro::Task<bool> UserJourney::hasStarted() {
    auto starting = Checks::until(3s, [this] { return isRecording(recorder().state()); });
    const bool isStarted = co_await starting;
    co_return isStarted;
}

bool UserJourney::isIdle() const {
    return std::holds_alternative<Session::Idle>(recorder().state());
}

std::optional<Note> UserJourney::stored(const Uuid& id) const {
    return LibraryStore(model_.dataDirectory()).load(id, currentDate());
}

const CallRecord* UserJourney::callOf(const Uuid& id) const {
    const Note* note = model_.note(id);
    return note != nullptr && note->call ? &*note->call : nullptr;
}

} // namespace varnic
