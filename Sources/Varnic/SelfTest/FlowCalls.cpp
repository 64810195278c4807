#include "Varnic/Recording/RecordingController.h"
#include "Varnic/SelfTest/Checks.h"
#include "Varnic/SelfTest/UserJourney.h"
#include "VarnicPlatform/Capture/Permissions.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <vector>

namespace varnic {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr Permissions::States allGranted{PermissionState::granted, PermissionState::granted, PermissionState::granted};

} // namespace

QCoro::Task<> UserJourney::recordFurtherCalls() {
    speed_ = 8;
    co_await discard();
    co_await recordOneSide();
    co_await recordWithoutSpeech();
}

QCoro::Task<> UserJourney::discard() {
    model_.toggleRecording();
    const bool isStarted = co_await hasStarted();
    checks_.check(isStarted && !model_.showConsent.value(), "after the first time, Record starts straight away");
    const Uuid id = recorder().noteID();
    const bool hadAudio = fs::exists(model_.audioFolder(id));
    model_.discardRecording();
    checks_.check(hadAudio && model_.note(id) == nullptr && !fs::exists(model_.audioFolder(id)) && isIdle(),
                  "Discard leaves no note and no audio");
}

QCoro::Task<> UserJourney::recordOneSide() {
    Permissions::override = allGranted;
    Permissions::override->screen = PermissionState::denied;
    co_await model_.startRecording(false);
    checks_.check(model_.showSetup.value() && isIdle(),
                  "without Screen Recording, Record explains instead of starting");
    model_.showSetup = false;
    co_await model_.startRecording(true);
    const auto& warning = recorder().warning();
    checks_.check(isRecording(recorder().state()) && warning && warning->contains("your side only"),
                  "“Record my side only” records with a clear note");
    auto listening = Checks::until(3s, [this] { return recorder().elapsed() > 0.5; });
    co_await listening;
    const std::optional<Uuid> id = co_await model_.stopRecording();
    const CallRecord* call = id ? callOf(*id) : nullptr;
    checks_.check(
        call != nullptr && call->tracks == std::vector{Speaker::you} && !call->segments.empty() &&
            std::ranges::all_of(call->segments, [](const Segment& line) { return line.speaker == Speaker::you; }),
        "the saved call has only your track");
}

QCoro::Task<> UserJourney::recordWithoutSpeech() {
    Permissions::override = allGranted;
    Permissions::override->speech = PermissionState::denied;
    transcriberFailure_ = TranscriberError::notAuthorized();
    co_await model_.startRecording(false);
    auto listening = Checks::until(3s, [this] { return recorder().elapsed() > 0.5; });
    co_await listening;
    const std::optional<Uuid> id = co_await model_.stopRecording();
    const CallRecord* call = id ? callOf(*id) : nullptr;
    checks_.check(call != nullptr && call->segments.empty() && call->problem == transcriberFailure_->what(),
                  "no Speech permission → the call is kept and says why",
                  call == nullptr ? "no call" : call->problem.value_or("no problem"));
    Permissions::override = allGranted;
    transcriberFailure_.reset();
    if (id) {
        co_await model_.retranscribe(*id);
    }
    call = id ? callOf(*id) : nullptr;
    checks_.check(call != nullptr && !call->segments.empty() && !call->problem, "Transcribe Again fills it in",
                  call == nullptr ? "no call" : call->problem.value_or("no problem"));
}

void UserJourney::checkSections() {
    const auto isCall = [](const Note* note) { return note->isCall(); };
    model_.section = LibrarySection::calls;
    const auto calls = model_.visibleNotes();
    checks_.check(!calls.empty() && std::ranges::all_of(calls, isCall), "Calls shows only calls");
    model_.section = LibrarySection::notes;
    checks_.check(std::ranges::none_of(model_.visibleNotes(), isCall), "Notes shows only notes");
    model_.section = LibrarySection::all;
}

} // namespace varnic
