#include "Varnic/AppModel/CallFlows.h"
#include "Varnic/AppModel/CallImport.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Models/CallProblem.h"

#include <gmock/gmock.h>

#include <QScopeGuard>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

TEST_F(CallFlowsTests, start_fails_leavesNothingButAToast) {
    model->makeCapture = [this] {
        capture = std::make_shared<HandCapture>(sides);
        capture->failure = CaptureError::nothingToRecord();
        return capture;
    };
    QCoro::waitFor(model->startRecording(false));
    EXPECT_EQ(toastText(), CaptureError::nothingToRecord().what());
    EXPECT_THAT(model->notes(), IsEmpty());
    EXPECT_THAT(audioFolders(), IsEmpty());
}

TEST_F(CallFlowsTests, stop_typingMeanwhile_isKeptBehindTheDigest) {
    delay = 0.4;
    auto stopping = record();
    const Uuid id = *model->selection.value();
    EXPECT_THAT(model->note(id)->title, HasSubstr("Call · "));
    EXPECT_THAT(model.stored(), SizeIs(1)) << "the placeholder";
    EXPECT_FALSE(fs::exists(model->audioFolder(id) / "recording.json"));
    model->update(id, false, [](Note& note) {
        note.blocks.back().text = "typed";
        note.blocks.push_back(Block::table({{"", ""}}));
        note.blocks.emplace_back();
    });
    ASSERT_EQ(QCoro::waitFor(stopping), id);

    const Note& note = *model->note(id);
    ASSERT_TRUE(note.call->digest);
    EXPECT_THAT(note.call->segments, SizeIs(DemoCall::lines().size()));
    EXPECT_EQ(note.blocks[note.blocks.size() - 2].text, "typed");
    EXPECT_EQ(note.blocks.back().kind, BlockKind::table);
    EXPECT_EQ(std::ranges::count(note.blocks, "Notes", &Block::text), 1) << "the digest's own";
    EXPECT_THAT(model.stored(), ElementsAre(note));
}

TEST_F(CallFlowsTests, stop_noteDeletedMeanwhile_comesBackWithWhatTheUserPutThere) {
    for (const bool isCancelled : {false, true}) {
        auto stopping = recordUntilHeard();
        const Uuid id = *model->selection.value();
        model->update(id, false, [](Note& note) {
            note.title = "Mine";
            note.blocks.back().text = "typed";
        });
        model->remove(id);
        if (isCancelled) {
            model->cancelProcessing();
        }
        QCoro::waitFor(stopping);
        const Note* note = model->note(id);
        ASSERT_EQ(note == nullptr, isCancelled) << "without words there is nothing that could come back";
        if (note != nullptr) {
            EXPECT_EQ(note->title, "Mine");
            EXPECT_THAT(note->blocks, Contains(Field(&Block::text, "typed")));
            EXPECT_THAT(note->call->segments, Not(IsEmpty()));
            EXPECT_THAT(model.stored(), ElementsAre(*note));
            EXPECT_NE(model->selection.value(), id);
            EXPECT_THAT(audioFolders(), SizeIs(1)) << "with its recording";
        }
    }
    model->flushSaves();
    const LibraryStore store(model.folder() / "Library");
    ASSERT_THAT(store.deleted(currentDate()), SizeIs(1));
    EXPECT_THAT(store.deleted(currentDate()).front().blocks, Contains(Field(&Block::text, "typed")));
}

TEST_F(CallFlowsTests, start_whileTheLastCallIsTranscribed_recordsASecondOne) {
    delay = 1;
    auto first = record();
    auto second = record();
    QCoro::waitFor(first);
    QCoro::waitFor(second);
    EXPECT_THAT(model.stored(), SizeIs(2));
    EXPECT_THAT(audioFolders(), SizeIs(2));
}

TEST_F(CallFlowsTests, stop_audioNotKept_leavesTheTranscript) {
    model->settings.keepAudio = false;
    const auto id = QCoro::waitFor(record());
    EXPECT_THAT(audioFolders(), IsEmpty());
    EXPECT_FALSE(model->note(id)->call->audioFolder);
    EXPECT_THAT(model->note(id)->call->segments, Not(IsEmpty()));
    const auto before = model.stored();
    QCoro::waitFor(model->retranscribe(*id));
    EXPECT_EQ(toastText(), TranscriberError::missingFile().what());
    EXPECT_EQ(model.stored(), before) << "with its transcript";
}

TEST_F(CallFlowsTests, retranscribe_recordingGone_keepsWhatWasSaid) {
    for (const char* gone : {"them.m4a", "you.m4a"}) { // of two sides one, and then both
        const Uuid id = *QCoro::waitFor(record());
        fs::remove(model->audioFolder(id) / gone);
        const Note before = *model->note(id);
        QCoro::waitFor(model->retranscribe(id));
        EXPECT_EQ(*model->note(id), before);
        EXPECT_EQ(toastText(), TranscriberError::missingFile().what());
    }
    failure = TranscriberError::unavailable();
    const Uuid silent = *QCoro::waitFor(record());
    for (const char* gone : {"them.m4a", "you.m4a"}) {
        fs::remove(model->audioFolder(silent) / gone);
    }
    QCoro::waitFor(model->retranscribe(silent));
    EXPECT_EQ(model->note(silent)->call->problem, TranscriberError::missingFile().what());
    EXPECT_THAT(model->processing.value(), IsEmpty());
}

TEST_F(CallFlowsTests, importedRecordingOfAnyForm_canBeUsedAgain) {
    const SoundFiles files;
    for (const char* name : {"Board.mp3", "Board.mp4", "Board.ogg", "Board.flac", "Board.M4A"}) {
        QCoro::waitFor(model->importAudio(files.tone(name, 1)));
        const Uuid id = *model->selection.value();
        const auto segments = model->note(id)->call->segments;
        ASSERT_THAT(segments, Not(IsEmpty())) << name;
        QCoro::waitFor(model->retranscribe(id));
        EXPECT_EQ(model->note(id)->call->segments.size(), segments.size()) << name;
        EXPECT_EQ(model->note(id)->call->problem, std::nullopt) << name;
        const fs::path mixed = files.path(std::string(name) + ".m4a");
        model->desktop.chooseDestination = [&](std::string) -> QCoro::Task<Desktop::File> { co_return mixed; };
        QCoro::waitFor(model->exportAudio(id));
        EXPECT_NEAR(AudioFiles::duration(mixed), 1, 0.1) << name;
    }
}

TEST_F(CallFlowsTests, importFiles_oneAtATime) {
    const SoundFiles files;
    std::size_t most = 0;
    const auto watch =
        model->processing.onValueChanged([&] { most = std::max(most, model->processing.value().size()); });
    auto first = model->importFiles({files.tone("A.wav", 1), files.write("none.wav", ""), files.tone("B.wav", 1)});
    model->importFiles({files.tone("C.wav", 1)});
    EXPECT_TRUE(model->isImporting.value());
    QCoro::waitFor(first);
    EXPECT_FALSE(model->isImporting.value());
    EXPECT_EQ(most, 1U);
    EXPECT_THAT(model.stored(), SizeIs(3));
}

TEST_F(CallFlowsTests, whatIsSetWhileACallIsWrittenDown_isKept) {
    const SoundFiles files;
    delay = 0.4;
    for (const bool isImport : {false, true}) {
        QCoro::Task<std::optional<Uuid>> working;
        if (isImport) {
            working = model->importCall({.files = {.them = files.tone("Board.wav", 1)}});
            ASSERT_TRUE(waitUntil([&] { return !model->processing.value().empty(); }));
        } else {
            working = record();
        }
        const Uuid id = *model->selection.value();
        model->update(id, false, [](Note& note) {
            note.title = "Mine";
            note.blocks.push_back(Block{.kind = BlockKind::divider});
            note.blocks.push_back(Block{.kind = BlockKind::flashcard, .back = "Paris"});
            note.blocks.push_back(Block{.kind = BlockKind::todo});
        });
        model->togglePin(id);
        model->renameThem(id, "Maya");
        model->removeAudio(id);
        QCoro::waitFor(working);
        const Note& note = *model->note(id);
        EXPECT_EQ(note.title, "Mine");
        EXPECT_TRUE(note.pinned);
        EXPECT_EQ(note.call->themName, "Maya");
        EXPECT_THAT(note.call->digest->email.body, StartsWith("Hi Maya,\n"));
        EXPECT_EQ(note.blocks[note.blocks.size() - 2].kind, BlockKind::divider);
        EXPECT_EQ(note.blocks.back().back, "Paris");
        EXPECT_THAT(model->existingTracks(note).speakers(), Not(IsEmpty())) << "sound that was being written down";
        EXPECT_THAT(model.stored(), Contains(note));
        const auto again = model->retranscribe(id);
        model->renameThem(id, "Zoë");
        EXPECT_THAT(model->note(id)->call->digest->email.body, StartsWith("Hi Zoë,\n"));
        QCoro::waitFor(again);
        EXPECT_THAT(model->note(id)->call->digest->email.body, StartsWith("Hi Zoë,\n"));
        model->removeAudio(id);
        EXPECT_THAT(model->note(id)->call->tracks, IsEmpty());
    }
}

TEST_F(CallFlowsTests, stop_audioNotKeptButNothingWrittenDown_keepsTheSound) {
    model->settings.keepAudio = false;
    failure = TranscriberError::unavailable();
    const Uuid failed = *QCoro::waitFor(record());
    failure.reset();
    delay = 1;
    auto stopping = record();
    model->cancelProcessing();
    const Uuid cancelled = *QCoro::waitFor(stopping);
    EXPECT_THAT(audioFolders(), SizeIs(2));
    for (const Uuid& id : {failed, cancelled}) {
        EXPECT_TRUE(model->note(id)->call->problem);
        QCoro::waitFor(model->retranscribe(id));
        EXPECT_THAT(model->note(id)->call->segments, Not(IsEmpty()));
        EXPECT_FALSE(model->note(id)->call->audioFolder);
    }
    EXPECT_THAT(audioFolders(), IsEmpty());
}

TEST_F(CallFlowsTests, process_liveWordsLackSomeAndTheSoundGivesNone_keepsTheSoundAndTellsTheLoss) {
    const Note call = *model->note(QCoro::waitFor(record()));
    model->settings.keepAudio = false;
    failure = TranscriberError::unavailable();
    Recording recording = recordingOf(call);
    recording.live = std::vector{Segment(Speaker::them, 0.2, 0.5, "Friday would be early enough.")};
    recording.isLiveBehind = true;
    recording.loss = "Their side lacks sound.";
    for (const bool isStopping : {false, true}) {
        auto processing = model->process(recording);
        if (isStopping) {
            model->cancelProcessing();
        }
        QCoro::waitFor(processing);
        EXPECT_EQ(model->note(call.id)->call->segments, *recording.live);
        EXPECT_EQ(model->note(call.id)->call->problem, recording.loss) << isStopping;
        EXPECT_THAT(audioFolders(), SizeIs(1)) << isStopping;
    }
    recording.live.reset();
    model->makeTranscriber = [] { return std::make_shared<FakeTranscriber>(); };
    QCoro::waitFor(model->process(recording));
    EXPECT_THAT(model->note(call.id)->call->segments, SizeIs(1));
    EXPECT_EQ(model->note(call.id)->call->problem, recording.loss) << "and not that nobody was heard";
}

TEST_F(CallFlowsTests, process_anotherProgramWritesTheCallDown_leavesItToThat) {
    const Note call = *model->note(QCoro::waitFor(record()));
    {
        const auto other = LibraryLock::forCall(model->audioFolder(call.id));
        QCoro::waitFor(model->process(recordingOf(call)));
        model->removeAudio(call.id);
    }
    EXPECT_EQ(*model->note(call.id), call);
    EXPECT_EQ(toastText(), "Another program is transcribing this call");
    EXPECT_THAT(model->processing.value(), IsEmpty());
    QCoro::waitFor(model->process(recordingOf(call)));
    EXPECT_NE(model->note(call.id)->call->segments, call.call->segments);
}

TEST_F(CallFlowsTests, lossOfSound_isToldWhateverBecomesOfTheWords) {
    failure = TranscriberError::unavailable();
    const Note call = *model->note(QCoro::waitFor(record()));
    failure.reset();
    delay = 20;
    const std::string loss = CallProblem::loss(Speaker::them, 61, std::nullopt, "The disk is full.");
    Recording recording = recordingOf(call);
    recording.loss = loss;
    auto processing = model->process(recording);
    model->cancelProcessing();
    QCoro::waitFor(processing);
    const auto problem = [&] { return model->note(call.id)->call->problem; };
    const auto again = [&] { QCoro::waitFor(model->retranscribe(call.id)); };
    EXPECT_EQ(problem(), quitProblem + (" " + loss));
    EXPECT_THAT(QCoro::waitFor(model->recoverRecordings()).unwritten, ElementsAre(call.id));
    EXPECT_EQ(problem(), quitProblem + (" " + loss));
    delay = 0;
    failure = TranscriberError::unavailable();
    again();
    EXPECT_EQ(problem(), TranscriberError::unavailable().what() + (" " + loss));
    failure.reset();
    again();
    EXPECT_EQ(problem(), loss);
    again();
    QCoro::waitFor(model->bringBackEarlier(call.id));
    EXPECT_EQ(problem(), loss);
}

TEST_F(CallFlowsTests, retranscribe_callKeptBeforeAudioWasNoLonger_keepsItsSound) {
    const Uuid id = *QCoro::waitFor(record());
    model->settings.keepAudio = false;
    QCoro::waitFor(model->retranscribe(id));
    EXPECT_THAT(audioFolders(), SizeIs(1));
    EXPECT_TRUE(model->note(id)->call->audioFolder);
}

TEST_F(CallFlowsTests, quit_whileRecording_savesTheCall) {
    QCoro::waitFor(model->startRecording(false));
    capture->play(Speaker::you, 0, 1);
    QCoro::waitFor(model->stopRecordingForQuit());
    model.restart();
    prepare();
    model.load();
    ASSERT_THAT(model->notes(), SizeIs(1));
    const Uuid id = model->notes().front().id;
    EXPECT_EQ(model->note(id)->call->problem,
              "Varnic was quit before this call was transcribed — choose Transcribe Again.");
    QCoro::waitFor(model->retranscribe(id));
    EXPECT_FALSE(model->note(id)->call->problem);
    EXPECT_THAT(model->note(id)->call->segments, Not(IsEmpty()));
}

TEST_F(CallFlowsTests, quit_whileStartingOrStopping_isFoundAtTheNextStart) {
    for (const bool isStopping : {false, true}) {
        model.restart();
        prepare();
        model->makeCapture = [this, isStopping] {
            capture = std::make_shared<HandCapture>(sides);
            capture->isOpening = !isStopping;
            return capture;
        };
        capture.reset();
        const auto open = qScopeGuard([this] {
            capture->isOpening = false;
            capture->isOpening.notify_all();
        });
        auto starting = model->startRecording(false);
        ASSERT_TRUE(waitUntil([&] { return capture && capture->takesSound && starting.isReady() == isStopping; }));
        for (int i = 0; i < 30; ++i) {
            capture->play(Speaker::you, 0.1 * i, 0.1);
        }
        const Uuid id = model->recorder().noteID();
        ASSERT_TRUE(waitUntil([&] { return AudioFiles::duration(model->audioFolder(id) / "you.m4a") > 0; }));
        QCoro::Task<std::optional<Uuid>> stopping;
        if (isStopping) {
            stopping = model->stopRecording();
        }
        EXPECT_TRUE(isBusy(model->recorder().state()) && !isRecording(model->recorder().state()));
        QCoro::waitFor(model->stopRecordingForQuit());
        model->flushSaves();

        ScratchModel next(model.folder() / "Library");
        next.load();
        const Note* found = next->note(id);
        EXPECT_TRUE(found != nullptr && found->call->problem == quitProblem) << isStopping;
        EXPECT_TRUE(found != nullptr && found->call->tracks == sides) << isStopping;

        capture->isOpening = false;
        capture->isOpening.notify_all();
        QCoro::waitFor(starting);
        if (!isStopping) {
            stopping = model->stopRecording();
        }
        QCoro::waitFor(stopping);
    }
}

TEST_F(CallFlowsTests, quit_whileTranscribing_leavesTheCallForAnotherTry) {
    delay = 20;
    auto stopping = record();
    const Uuid id = *model->selection.value();
    model->update(id, false, [](Note& note) { note.blocks.back().text = "typed"; });
    model.restart();
    prepare();
    model.load();
    delay = 0;
    ASSERT_THAT(model->notes(), SizeIs(1));
    EXPECT_EQ(model->note(id)->blocks.back().text, "typed");
    EXPECT_THAT(model->note(id)->call->segments, IsEmpty());
    QCoro::waitFor(model->retranscribe(id));
    EXPECT_THAT(model->note(id)->call->segments, Not(IsEmpty()));
    EXPECT_THAT(audioFolders(), SizeIs(1));
}

TEST_F(CallFlowsTests, quit_whileTranscribing_keepsTheWordsThatWereShown) {
    delay = 20;
    auto stopping = recordWithLiveWords();
    ASSERT_THAT(model.stored(), SizeIs(1));
    EXPECT_THAT(model.stored().front().call->segments,
                ElementsAre(Field(&Segment::speaker, Speaker::you), Field(&Segment::speaker, Speaker::them)));
    model.restart();
    prepare();
    model.load();
    EXPECT_THAT(model->notes().front().call->segments, SizeIs(2));
    EXPECT_FALSE(model->notes().front().call->problem);
}

TEST_F(CallFlowsTests, stop_recordingGivesNoWords_keepsThoseThatWereShown) {
    model->settings.keepAudio = false;
    failure = TranscriberError::unavailable();
    const Note failed = *model->note(QCoro::waitFor(recordWithLiveWords()));
    EXPECT_EQ(failed.call->problem, failure->what());
    failure.reset();
    delay = 20;
    auto stopping = recordWithLiveWords();
    model->cancelProcessing();
    const Note cancelled = *model->note(QCoro::waitFor(stopping));
    EXPECT_FALSE(cancelled.call->problem);
    for (const Note& note : {failed, cancelled}) {
        EXPECT_THAT(note.call->segments, SizeIs(2));
        EXPECT_TRUE(note.call->digest);
        EXPECT_THAT(model.stored(), Contains(note));
    }
    EXPECT_THAT(audioFolders(), SizeIs(2)) << "the better words are still in the sound";
}

TEST_F(CallFlowsTests, recover_noteWithSoundAndNoWords_saysSoUnlessSomebodyWritesThem) {
    delay = 20;
    auto stopping = record();
    const Uuid id = *model->selection.value();
    model->flushSaves();
    ScratchModel other(model.folder() / "Library");
    const auto recovered = [&] {
        other.load();
        return QCoro::waitFor(other->recoverRecordings()).unwritten;
    };
    {
        const auto alive = LibraryLock::forCall(other->audioFolder(id));
        EXPECT_THAT(recovered(), IsEmpty());
        EXPECT_FALSE(other->note(id)->call->problem);
        QCoro::waitFor(other->retranscribe(id));
        EXPECT_THAT(other->note(id)->call->segments, IsEmpty());
    }
    EXPECT_THAT(recovered(), ElementsAre(id));
    EXPECT_EQ(other->note(id)->call->problem, quitProblem);
    model->cancelProcessing();
    QCoro::waitFor(stopping);
}

TEST_F(CallFlowsTests, cancelProcessing_filesTheCallForAnotherTry) {
    delay = 20;
    auto stopping = record();
    model->cancelProcessing();
    const auto id = QCoro::waitFor(stopping);
    EXPECT_EQ(model->note(id)->call->problem, quitProblem);
    auto again = model->retranscribe(*id);
    model->cancelProcessing();
    QCoro::waitFor(again);
    EXPECT_EQ(model->note(id)->call->problem, quitProblem);
    delay = 0;
    QCoro::waitFor(model->retranscribe(*id));
    EXPECT_FALSE(model->note(id)->call->problem);
    EXPECT_THAT(model->note(id)->call->segments, Not(IsEmpty()));
}

TEST_F(CallFlowsTests, retranscribe_typingMeanwhile_isKept) {
    const Uuid id = *QCoro::waitFor(record());
    delay = 0.4;
    const auto before = model->note(id)->call->segments;
    auto again = model->retranscribe(id);
    model->update(id, false, [](Note& note) { note.blocks.push_back(Block{.text = "typed"}); });
    QCoro::waitFor(again);
    EXPECT_THAT(model->note(id)->blocks, Contains(Field(&Block::text, "typed")));
    EXPECT_NE(model->note(id)->call->segments.front().id, before.front().id);
    EXPECT_THAT(model.stored(), ElementsAre(*model->note(id)));
}

TEST_F(CallFlowsTests, retranscribe_fails_saysSoAndKeepsTheTranscript) {
    const Uuid id = *QCoro::waitFor(record());
    const auto segments = model->note(id)->call->segments;
    failure = TranscriberError::unavailable();
    QCoro::waitFor(model->retranscribe(id));
    EXPECT_EQ(model->note(id)->call->problem, TranscriberError::unavailable().what());
    EXPECT_EQ(model->note(id)->call->segments, segments);
    EXPECT_THAT(model->processing.value(), IsEmpty());
}

TEST_F(CallFlowsTests, import_soundFile_isTheOtherSide) {
    const SoundFiles files;
    const fs::path file = files.tone("Board Meeting.wav", 2);
    QCoro::waitFor(model->importAudio(file));
    ASSERT_THAT(model->notes(), SizeIs(1));
    const CallRecord& call = *model->notes().front().call;
    EXPECT_EQ(call.themName, "Speaker");
    EXPECT_EQ(call.source, "Imported recording");
    EXPECT_NEAR(call.duration, 2, 0.001);
    struct statx status{};
    ::statx(AT_FDCWD, file.c_str(), 0, STATX_BTIME | STATX_MTIME, &status);
    const auto made = (status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime;
    EXPECT_EQ(std::chrono::floor<std::chrono::seconds>(call.startedAt).time_since_epoch().count(), made.tv_sec);
    EXPECT_THAT(call.segments, Each(Field(&Segment::speaker, Speaker::them)));
}

TEST_F(CallFlowsTests, import_whatHoldsNoSound_leavesNothing) {
    const SoundFiles files;
    for (const auto& [file, text] : std::vector<std::pair<fs::path, std::string>>{
             {files.write("notes.txt", "not a sound"), "That file has no audio Varnic can read"},
             {files.write("empty.m4a", ""), "That file has no audio Varnic can read"},
             {files.path("missing.wav"), "Couldn’t read that file"}}) {
        QCoro::waitFor(model->importAudio(file));
        EXPECT_EQ(toastText(), text);
    }
    EXPECT_THAT(model->notes(), IsEmpty());
    EXPECT_THAT(audioFolders(), IsEmpty());
}

TEST_F(CallFlowsTests, import_killedWhileItCopies_isNotTakenForTheWholeRecording) {
    const SoundFiles files;
    const CallImport call{.files = {.them = files.tone("Board Meeting.wav", 20)}};
    const Uuid id = Uuid::random();
    const fs::path folder = model->audioFolder(id);
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit megabyte{1'000'000, 1'000'000};
        ::setrlimit(RLIMIT_FSIZE, &megabyte);
        copyIn(call, id, folder);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_EQ(WTERMSIG(status), SIGXFSZ);
    const AppModel::Recovered recovered = QCoro::waitFor(model->recoverRecordings());
    EXPECT_THAT(recovered.calls, IsEmpty());
    EXPECT_THAT(model->notes(), IsEmpty());
    EXPECT_THAT(audioFolders(), IsEmpty());
}

} // namespace
} // namespace varnic
