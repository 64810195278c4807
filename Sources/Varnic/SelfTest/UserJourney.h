#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Fixtures/FixtureCapture.h"

#include <QCoro/QCoroTask>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace varnic {

class AppDelegate;
class Checks;
class RecordingController;
class StandIns;

/// A user's way through the whole program, from the first recording to a library that is searched and tidied up. A
/// broken promise doesn't end it, as long as there is a note to go on with. Main thread.
class UserJourney {
public:
    // What the journey sets, and a later start has to find again.

    static constexpr const char* yourName = "Tara";
    static constexpr const char* themName = "Mira";
    static constexpr const char* vocabularyTitle = "Café vocabulary ☕️";
    static constexpr const char* localModel = "llama3.2";

    UserJourney(AppModel& model, AppDelegate& shell, const StandIns& standIns, Checks& checks);

    /// Goes all the way.
    QCoro::Task<> run();

private:
    // The stages, in order. Those that give a truth value say whether there is something to go on with.

    QCoro::Task<bool> openLibrary();
    QCoro::Task<> prepareCall();
    QCoro::Task<> recordFirstCall();
    void remindFirst();
    void checkLivePage();
    QCoro::Task<> listen();
    QCoro::Task<bool> stopAndSummarise();
    QCoro::Task<> checkFirstCall();
    void checkTranscript(const CallRecord& call);
    void checkTracks();
    void checkDigest();
    void shareEmail();
    QCoro::Task<> summariseByAI();
    QCoro::Task<> tryKeys();
    QCoro::Task<> replaceSummary();
    void exportCall();
    QCoro::Task<> keepCards();
    void typeCard();
    void gradeCard();
    void search();
    void tickTodo();
    QCoro::Task<> deleteAndUndo();
    QCoro::Task<> recordFurtherCalls();
    QCoro::Task<> discard();
    QCoro::Task<> recordOneSide();
    QCoro::Task<> recordWithoutSpeech();
    void checkSections();
    void leaveSettings();

    QCoro::Task<bool> hasStarted();
    [[nodiscard]] std::filesystem::path fixtureFile(const char* name) const;
    [[nodiscard]] bool isIdle() const;

    [[nodiscard]] RecordingController& recorder() const { return model_.recorder(); }

    /// What is on disk of a note, read anew.
    [[nodiscard]] std::optional<Note> stored(const Uuid& id) const;
    [[nodiscard]] const CallRecord* callOf(const Uuid& id) const;

    [[nodiscard]] const Note* firstCall() const { return model_.note(call_); }

    [[nodiscard]] std::string aiErrorText() const;
    [[nodiscard]] int dueCards() const;

    AppModel& model_;
    AppDelegate& shell_;
    const StandIns& standIns_;
    Checks& checks_;
    /// The capture of the last recording.
    std::shared_ptr<FixtureCapture> capture_;
    /// How much faster than in life the call plays.
    double speed_ = 10;
    /// How the transcriptions fail from here on, if they do.
    std::optional<TranscriberError> transcriberFailure_;
    /// The notes of the first call and of the cards.
    Uuid call_;
    Uuid vocabulary_;
};

} // namespace varnic
