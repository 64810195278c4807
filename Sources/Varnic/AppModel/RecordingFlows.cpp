#include "Varnic/AppModel/AppModel.h"

#include "Varnic/Background.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Pipeline/CallSource.h"
#include "VarnicCore/Pipeline/SessionState.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Transcript/Diarisation.h"
#include "VarnicPlatform/Capture/Permissions.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <QPointer>

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

namespace {

Recording recordingOf(const RecordingResult& result) {
    return {.noteID = result.noteID,
            .tracks = result.tracks,
            .isLiveBehind = result.isLiveBehind,
            .liveModel = result.liveModel,
            .liveLanguage = result.liveLanguage,
            .startedAt = result.startedAt,
            .duration = result.duration,
            .source = result.source,
            .audioFolder = result.noteID.text(),
            .loss = result.loss};
}

std::vector<Segment> mergedLive(const std::vector<Segment>& live) {
    std::vector<Segment> you;
    std::vector<Segment> them;
    std::ranges::partition_copy(live, std::back_inserter(you), std::back_inserter(them),
                                [](const Segment& line) { return line.speaker == Speaker::you; });
    return Diarisation::merge(you, them);
}

} // namespace

void AppModel::toggleRecording() {
    const bool seen = settings.consentSeen.value() && !settings.remindEveryTime.value();
    const SessionState state = showConsent.value() ? SessionState(Session::AskingConsent()) : recorder_->state();
    switch (SessionLogic::toggle(state, seen)) {
    case SessionLogic::Action::showConsent:
        desktop.activate();
        showConsent = true;
        break;
    case SessionLogic::Action::start:
        startRecording(false);
        break;
    case SessionLogic::Action::stop:
        stopRecording();
        break;
    case SessionLogic::Action::none:
        break;
    }
}

void AppModel::consentAccepted() {
    settings.consentSeen = true;
    showConsent = false;
    startRecording(false);
}

QCoro::Task<> AppModel::startRecording(bool allowWithoutThem) {
    if (isBusy(recorder_->state())) {
        co_return;
    }
    // Whoever gets here has said yes to recording. Asking the sound server may take a moment.
    const auto survey = [language = settings.language()] { return Permissions::survey(true, language); };
    const QPointer self(this);
    const Permissions::States may = co_await inBackground(survey);
    if (!self || isBusy(recorder_->state())) {
        co_return;
    }
    const bool screen = may.screen == PermissionState::granted;
    if (!screen && !allowWithoutThem) {
        showSetup = true;
        co_return;
    }
    const Uuid id = Uuid::random();
    const auto capture = makeCapture();
    // A microphone that is missing now may yet be plugged in.
    const WantedSides sides{.you = wantedSides.you && (may.mic == PermissionState::granted || !Permissions::override),
                            .them = wantedSides.them && screen};
    const std::string source(CallSource::guess(desktop.runningPrograms(), desktop.frontProgram()));
    lacksModel = may.speech == PermissionState::denied;
    const bool isLive = settings.liveTranscript.value() && may.speech == PermissionState::granted;
    std::optional<std::string> locale;
    if (isLive) {
        locale = settings.language().locale;
    }
    std::optional<std::string> problem;
    try {
        auto starting = recorder_->start(id, store_.audioFolder(id), capture, std::move(locale), source, sides);
        co_await starting;
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (self && problem) {
        // Nothing was recorded, and nothing of it stays.
        store_.removeAudio(id);
        flash({.text = problem->empty() ? "Recording couldn’t start" : *problem, .symbol = warningSymbol});
    }
    if (!self || problem || liveNoteID() != id) {
        co_return;
    }
    query = std::string();
    if (section.value() != LibrarySection::calls) {
        section = LibrarySection::all;
    }
    selection = id;
    desktop.refreshPill();
    desktop.playSound("Tink");
}

QCoro::Task<std::optional<Uuid>> AppModel::stopRecording() {
    const QPointer self(this);
    const auto result = co_await recorder_->stop();
    if (!self || !result) {
        co_return std::nullopt;
    }
    desktop.refreshPill();
    desktop.playSound("Pop");
    const Uuid id = result->noteID;
    Recording recording = recordingOf(*result);
    CallRecord placeholder = recording.record();
    // The live transcript and the report of lost audio survive if the program ends before the call is
    // transcribed.
    placeholder.segments = mergedLive(result->live);
    placeholder.problem = result->loss;
    showPlaceholder(id, fmt::format("{} · {}", result->source, region.format(result->startedAt, "d MMM, HH:mm")),
                    std::move(placeholder));
    // Until the note is on disk, the recording counts as one to be recovered.
    saveNow(id, [mark = result->mark] { mark->remove(); });
    if (settings.liveTranscript.value()) {
        recording.live = result->live;
    }
    co_await process(std::move(recording));
    co_return id;
}

QCoro::Task<> AppModel::stopRecordingForQuit() {
    const QPointer self(this);
    const auto result = co_await recorder_->stop();
    if (!self || !result) {
        co_return;
    }
    CallRecord call = recordingOf(*result).record();
    call.segments = mergedLive(result->live);
    call.problem = result->loss;
    std::optional<CallDigest> digest;
    if (call.segments.empty()) {
        call.problem = CallProblem::joined(quitProblem, result->loss);
    } else {
        digest = ExtractiveSummariser::makeDigest(call.segments, context(call), region, currentDate());
        call.digest = digest;
    }
    notes_.insert(notes_.begin(), NoteEditor::callNote(result->noteID, std::move(call), digest, region, currentDate()));
    Q_EMIT notesChanged({{result->noteID}});
    scheduleSave(result->noteID, true, [mark = result->mark] { mark->remove(); });
    flushSaves();
}

void AppModel::discardRecording() {
    const Uuid id = recorder_->noteID();
    recorder_->discard();
    desktop.refreshPill();
    if (selection.value() == id) {
        selection = std::nullopt;
        selectFirstIfNeeded();
    }
}

} // namespace varnic
