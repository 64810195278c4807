#include "Varnic/Background.h"
#include "Varnic/Recording/RecordingController.h"
#include "Varnic/SelfTest/Checks.h"
#include "Varnic/SelfTest/StandIns.h"
#include "Varnic/SelfTest/UserJourney.h"
#include "Varnic/Shell/AppDelegate.h"
#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/VoiceActivity.h"
#include "VarnicCore/Fixtures/DemoCall.h"
#include "VarnicCore/Fixtures/FixtureBuilder.h"
#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicCore/Text/Unicode.h"

#include <QElapsedTimer>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <vector>

namespace varnic {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Seconds; 0 where the file can't be read.
double lengthOf(const fs::path& file) {
    try {
        return AudioFiles::duration(file);
    } catch (const std::exception&) {
        return 0;
    }
}

std::size_t spokenSpans(const fs::path& file) {
    constexpr double minSpeech = 0.25;
    constexpr double bridge = 0.6;
    try {
        return VoiceActivity::detect(file, minSpeech, bridge).size();
    } catch (const std::exception&) {
        return 0;
    }
}

bool holds(const std::vector<Speaker>& sides, Speaker side) {
    return std::ranges::find(sides, side) != sides.end();
}

} // namespace

fs::path UserJourney::fixtureFile(const char* name) const {
    const char* folder = std::getenv("VARNIC_FIXTURE_DIR");
    return (folder != nullptr ? fs::path(folder) : model_.dataDirectory() / "fixture") / name;
}

QCoro::Task<> UserJourney::prepareCall() {
    constexpr double gap = 0.9;
    const fs::path you = fixtureFile("you.caf");
    const fs::path them = fixtureFile("them.caf");
    const auto isThere = [&] { return fs::exists(you) && fs::exists(them); };
    if (!isThere()) {
        const auto speak = [folder = you.parent_path()] { FixtureBuilder::build(folder, DemoCall::lines(), gap); };
        co_await inBackground(speak);
    }
    model_.makeCapture = [this, you, them] {
        capture_ = std::make_shared<FixtureCapture>(you, them, speed_);
        return capture_;
    };
    model_.makeTranscriber = [this] {
        auto transcriber = std::make_shared<FakeTranscriber>();
        transcriber->segments = DemoCall::segments(0, 1);
        transcriber->failure = transcriberFailure_;
        return transcriber;
    };
    model_.settings.liveTranscript = false;
    model_.settings.yourName = yourName;
    model_.settings.showPill = true;
    checks_.check(isThere(), "fixture call audio is ready");
}

QCoro::Task<> UserJourney::recordFirstCall() {
    remindFirst();
    model_.consentAccepted();
    const bool isStarted = co_await hasStarted();
    checks_.check(isStarted, "accepting starts the recording");
    call_ = recorder().noteID();
    checkLivePage();
    co_await listen();
}

void UserJourney::remindFirst() {
    const auto isReminding = [this] { return model_.showConsent.value() && isIdle(); };
    model_.toggleRecording();
    checks_.check(isReminding(), "first Record shows the consent reminder and doesn’t record");
    model_.toggleRecording();
    checks_.check(isReminding(), "pressing Record again while the reminder is up does nothing");
    model_.copyHeadsUp();
    checks_.check(Unicode::lowerCased(standIns_.pasteboard()).contains("record"),
                  "the heads-up message copies (private pasteboard)");
}

void UserJourney::checkLivePage() {
    checks_.check(isBusy(recorder().state()) && model_.selection.value() == call_, "the live page is shown");
    checks_.check(shell_.pill().isVisible(), "the floating recording pill is on screen");
    checks_.check(model_.settings.consentSeen.value() && !model_.showConsent.value(), "the reminder is one-time");
}

/// Until the call has been played.
QCoro::Task<> UserJourney::listen() {
    constexpr double margin = 1.2;
    const auto limit =
        std::chrono::milliseconds(std::lround(1000 * margin * lengthOf(fixtureFile("you.caf")) / speed_));
    auto playing = Checks::until(std::min<std::chrono::milliseconds>(limit, 10s),
                                 [this] { return capture_ && capture_->finished(); });
    co_await playing;
    constexpr float loud = 0.3F;
    const auto& samples = recorder().samples();
    const bool heardYou = std::ranges::any_of(samples, [](const InkSample& sample) { return sample.you > loud; });
    const bool heardThem = std::ranges::any_of(samples, [](const InkSample& sample) { return sample.them > loud; });
    checks_.check(heardYou && heardThem, fmt::format("the ink line heard both sides ({} samples)", samples.size()));
    const auto& sides = recorder().sides();
    checks_.check(holds(sides, Speaker::you) && holds(sides, Speaker::them), "both tracks are open");
}

QCoro::Task<bool> UserJourney::stopAndSummarise() {
    QElapsedTimer clock;
    clock.start();
    if (isRecording(recorder().state())) {
        model_.toggleRecording();
    }
    const auto hasDigest = [this] {
        const CallRecord* call = callOf(call_);
        return call != nullptr && call->digest;
    };
    // What never began to be recorded isn't waited for.
    auto writing = Checks::until(isIdle() ? 0s : 30s, hasDigest);
    const bool isWritten = co_await writing;
    const auto& stages = model_.processing.value();
    const auto stage = stages.find(call_);
    const CallRecord* call = callOf(call_);
    checks_.check(
        isWritten,
        fmt::format("stopping transcribes and summarises ({:.1f} s)", static_cast<double>(clock.elapsed()) / 1000),
        fmt::format("processing={} digest={} problem={}", stage == stages.end() ? "none" : stage->second.label(),
                    hasDigest(), call == nullptr ? "no call" : call->problem.value_or("none")));
    co_return call != nullptr;
}

QCoro::Task<> UserJourney::checkFirstCall() {
    checks_.check(!shell_.pill().isVisible(), "the pill goes away after stopping");
    checks_.check(isIdle(), "the recorder is idle again");
    auto saving = Checks::until(5s, [this] {
        const std::optional<Note> note = stored(call_);
        return note && note->call && note->call->digest;
    });
    const bool isSaved = co_await saving;
    checks_.check(isSaved, "the call is saved to disk");
    if (const CallRecord* call = callOf(call_)) {
        checkTranscript(*call);
    }
    checkTracks();
    checkDigest();
}

void UserJourney::checkTranscript(const CallRecord& call) {
    const auto& lines = DemoCall::lines();
    const auto speakerOf = [](const auto& line) { return line.first; };
    const auto textOf = [](const auto& line) { return line.second; };
    checks_.check(call.segments.size() == lines.size(),
                  fmt::format("every line was transcribed from the recorded tracks ({})", call.segments.size()));
    checks_.check(std::ranges::equal(call.segments, lines, {}, &Segment::speaker, speakerOf),
                  "who-said-what comes from the two tracks");
    checks_.check(std::ranges::equal(call.segments, lines, {}, &Segment::text, textOf), "…in the right order");
}

void UserJourney::checkTracks() {
    constexpr double shortest = 20;
    constexpr double mostApart = 0.5;
    const fs::path folder = model_.audioFolder(call_);
    const double you = lengthOf(folder / "you.m4a");
    const double them = lengthOf(folder / "them.m4a");
    checks_.check(you >= shortest && them >= shortest && std::abs(you - them) < mostApart,
                  fmt::format("two AAC tracks of the same length were written ({:.1f} / {:.1f})", you, them));
    const std::size_t spans = spokenSpans(folder / "them.m4a");
    checks_.check(spans == DemoCall::script().at(Speaker::them).size(),
                  fmt::format("their track holds each of their lines ({})", spans));
}

void UserJourney::checkDigest() {
    const Note* note = firstCall();
    const auto isYoursByFriday = [](const Block& block) {
        return block.kind == BlockKind::todo && block.owner == Speaker::you && block.due == "Friday";
    };
    checks_.check(std::ranges::any_of(note->blocks, isYoursByFriday), "to-dos with owners and dates are in the note");
    checks_.check(standIns_.ai().calls() == 0, "the summary is local; nothing was sent anywhere");
    const std::string title = Unicode::lowerCased(note->title);
    checks_.check(title.contains("onboarding") || title.contains("pricing"),
                  fmt::format("the call titled itself ({})", note->title));
}

} // namespace varnic
