#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/AppModel/CallFlows.h"
#include "Varnic/LoopExecutor.h"
#include "VarnicCore/FileSizeLimit.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <memory>
#include <string>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// What is to happen while a disk is waited for.
std::function<void()> whileTheDiskIsWaitedFor; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): for syncfs

} // namespace

/// In the place of the system's, to which it goes on.
extern "C" int syncfs(int descriptor) noexcept {
    if (whileTheDiskIsWaitedFor) {
        whileTheDiskIsWaitedFor();
    }
    return static_cast<int>(::syscall(SYS_syncfs, descriptor));
}

namespace varnic {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class LibraryMoveFlowTests : public CallFlowsTests {
protected:
    LibraryMoveFlowTests() { model.load(); }

    AppModel::LibraryMoved move(const fs::path& to) { return QCoro::waitFor(model->moveLibrary(to)); }

    AppModel::LibraryMoved use(const fs::path& folder) { return QCoro::waitFor(model->useLibrary(folder)); }

    [[nodiscard]] static std::vector<std::string> titlesIn(const fs::path& root) {
        std::vector<std::string> titles;
        for (const Note& note : LibraryStore(root).loadAll(currentDate())) {
            titles.push_back(note.title);
        }
        return titles;
    }

    const fs::path target = model.folder() / "elsewhere";
};

TEST_F(LibraryMoveFlowTests, move_goesOnInTheNewPlace) {
    const Uuid call = *QCoro::waitFor(record());
    const Uuid id = model->newNote("before");
    std::vector<fs::path> told;
    QObject::connect(&*model, &AppModel::libraryMoved, &*model,
                     [&told](const fs::path& folder) { told.push_back(folder); });
    const AppModel::LibraryMoved moved = move(target);
    EXPECT_TRUE(moved.isMoved);
    EXPECT_EQ(moved.sentence, "");
    EXPECT_THAT(told, testing::ElementsAre(target));
    EXPECT_EQ(model->dataDirectory(), target);
    EXPECT_EQ(model->settings.libraryFolder.value(), target.string());
    EXPECT_EQ(model->libraryMove.value(), std::nullopt);
    EXPECT_FALSE(fs::exists(model.folder() / "Library"));
    EXPECT_TRUE(model->callActions(*model->note(call), model->callFiles(*model->note(call))).play);

    model->update(id, true, [](Note& note) { note.title = "after"; });
    model->flushSaves();
    EXPECT_THAT(titlesIn(target), testing::Contains("after"));
    // What others write there is noticed.
    LibraryStore(target).save(Note(Uuid::random(), "by another", currentDate(), {}));
    EXPECT_TRUE(waitUntil([this] { return model->notes().size() == 3; }));
    EXPECT_FALSE(fs::exists(model.folder() / "Library")) << "nothing goes to the old place any more";
}

TEST_F(LibraryMoveFlowTests, move_whileTheUserWritesOn_losesNothing) {
    const Uuid id = model->newNote("first");
    auto moving = model->moveLibrary(target);
    EXPECT_TRUE(model->libraryMove.value());
    EXPECT_FALSE(move(model.folder() / "third").isMoved) << "one at a time";
    model->update(id, true, [](Note& note) { note.title = "second"; });
    model->newNote("other");
    EXPECT_TRUE(QCoro::waitFor(moving).isMoved);
    EXPECT_THAT(titlesIn(target), testing::UnorderedElementsAre("second", "other"));
}

TEST_F(LibraryMoveFlowTests, move_neverHoldsUpTheMainThreadForTheDisk) {
    const Uuid id = model->newNote("first");
    int waits = 0;
    int turns = 0;
    // On another thread; a main thread that goes on takes it up at once.
    whileTheDiskIsWaitedFor = [&] {
        ++waits;
        auto turn = std::make_shared<std::promise<void>>();
        auto isTaken = turn->get_future();
        LoopExecutor::main().post([this, id, waits, turn] {
            model->update(id, true, [waits](Note& note) { note.title = "edit " + std::to_string(std::min(waits, 3)); });
            turn->set_value();
        });
        turns += isTaken.wait_for(std::chrono::seconds(10)) == std::future_status::ready ? 1 : 0;
    };
    const AppModel::LibraryMoved moved = move(target);
    whileTheDiskIsWaitedFor = nullptr;
    EXPECT_TRUE(moved.isMoved) << moved.sentence;
    EXPECT_GE(waits, 2) << "for the copy, and for what was edited meanwhile";
    EXPECT_EQ(turns, waits);
    model->flushSaves();
    EXPECT_THAT(titlesIn(target), testing::ElementsAre("edit " + std::to_string(std::min(waits, 3))));
}

TEST_F(LibraryMoveFlowTests, chosenFolder_withALibrary_canBeUsedInPlaceOfThisOne) {
    const Uuid mine = model->newNote("mine");
    const Uuid theirs = Uuid::random();
    LibraryStore(target).save(Note(theirs, "theirs", currentDate(), {}));
    const AppModel::LibraryMoved refused = move(target);
    EXPECT_FALSE(refused.isMoved);
    EXPECT_TRUE(refused.isOtherThere) << refused.sentence;

    const auto old = model.folder() / "Library";
    EXPECT_TRUE(use(target).isMoved);
    EXPECT_EQ(model->dataDirectory(), target);
    EXPECT_EQ(model->settings.libraryFolder.value(), target.string());
    EXPECT_EQ(model->note(mine), nullptr);
    EXPECT_EQ(model->selection.value(), theirs);
    model->update(theirs, true, [](Note& note) { note.title = "ours"; });
    model->flushSaves();
    LibraryStore(target).save(Note(Uuid::random(), "by another", currentDate(), {}));
    EXPECT_TRUE(waitUntil([this] { return model->notes().size() == 2; })) << "it is watched";
    LibraryStore(old).save(Note(Uuid::random(), "late", currentDate(), {}));
    EXPECT_THAT(titlesIn(target), testing::UnorderedElementsAre("ours", "by another"));
    EXPECT_THAT(titlesIn(old), testing::UnorderedElementsAre("mine", "late"));

    EXPECT_TRUE(use(old).isMoved) << "and back";
    EXPECT_EQ(model->notes().size(), 2);
    EXPECT_NE(model->note(mine), nullptr);
}

TEST_F(LibraryMoveFlowTests, use_whatIsNoLibraryOrNotNow_isRefused) {
    const Uuid id = model->newNote("kept");
    model->flushSaves();
    std::filesystem::create_directories(target / "notes");
    std::ofstream(target / "notes" / "shopping.json") << "[]";
    EXPECT_THAT(use(target).sentence, HasSubstr("holds no library"));
    EXPECT_FALSE(move(target).isOtherThere);
    EXPECT_THAT(use(model.folder() / "nowhere").sentence, HasSubstr("isn’t there"));
    EXPECT_THAT(use(model.folder() / "Library").sentence, HasSubstr("already"));
    LibraryStore(target).save(Note(Uuid::random(), "theirs", currentDate(), {}));
    QCoro::waitFor(model->startRecording(false));
    EXPECT_THAT(use(target).sentence, HasSubstr("is being recorded"));
    model->discardRecording();
    const fs::path settings = model.folder() / "settings.ini";
    fs::remove(settings);
    fs::create_directories(settings / "in the way");
    EXPECT_THAT(use(target).sentence, HasSubstr("can’t be saved"));
    EXPECT_NE(model->note(id), nullptr);
    EXPECT_EQ(model->dataDirectory(), model.folder() / "Library");
}

TEST_F(LibraryMoveFlowTests, lostLibrary_isSaidUntilItIsFound) {
    model->settings.isLibraryLost = true;
    model.restart();
    model.load();
    EXPECT_THAT(model->loadProblem.value().value_or(""), HasSubstr("Change Folder…"));
    LibraryStore(target).save(Note(Uuid::random(), "found", currentDate(), {}));
    model.takeNotesAway();
    QCoro::waitFor(model->load());
    ASSERT_TRUE(waitUntil([this] { return model->isUnreadable.value(); }));
    EXPECT_TRUE(move(target).isOtherThere) << "also from one that can't be looked into";
    EXPECT_TRUE(use(target).isMoved);
    EXPECT_FALSE(model->isUnreadable.value());
    ASSERT_EQ(model->notes().size(), 1);
    model.putNotesBack();
    const fs::path emptied = model.folder() / "emptied";
    const LibraryStore made(emptied);
    EXPECT_TRUE(move(emptied).isOtherThere) << "a library whose notes are all gone";
    EXPECT_EQ(model->loadProblem.value(), std::nullopt);
    EXPECT_FALSE(model->settings.isLibraryLost.value());
}

TEST_F(LibraryMoveFlowTests, move_aRecordingBegins_callsItOff) {
    model->newNote("kept");
    auto moving = model->moveLibrary(target);
    QCoro::waitFor(model->startRecording(false));
    const AppModel::LibraryMoved moved = QCoro::waitFor(moving);
    EXPECT_FALSE(moved.isMoved);
    EXPECT_EQ(moved.sentence, "A call is being recorded. The library can be moved after that.");
    EXPECT_EQ(move(target).sentence, moved.sentence);
    EXPECT_FALSE(fs::exists(target));
    model->discardRecording();
    EXPECT_TRUE(move(target).isMoved);
}

TEST_F(LibraryMoveFlowTests, move_placeCantBeRemembered_stays) {
    model->newNote("kept");
    model->flushSaves();
    // The settings can't be written where a folder is in their place.
    const fs::path settings = model.folder() / "settings.ini";
    fs::remove(settings);
    fs::create_directories(settings / "in the way");
    const AppModel::LibraryMoved moved = move(target);
    EXPECT_FALSE(moved.isMoved);
    EXPECT_THAT(moved.sentence, HasSubstr("can’t be saved"));
    EXPECT_FALSE(fs::exists(target));
    EXPECT_EQ(model->settings.libraryFolder.value(), "");
    const Uuid id = model->newNote("after");
    model->flushSaves();
    EXPECT_EQ(model->saveProblem(id), std::nullopt);
    EXPECT_THAT(titlesIn(model.folder() / "Library"), testing::UnorderedElementsAre("kept", "after"));
}

TEST_F(LibraryMoveFlowTests, move_cancelledOrRefused_stays) {
    model->newNote("kept");
    auto moving = model->moveLibrary(target);
    model->cancelLibraryMove();
    EXPECT_EQ(QCoro::waitFor(moving).sentence, "Stopped. The library is where it was.");
    EXPECT_THAT(move(model.folder()).sentence, HasSubstr("holds the library"));
    model.takeNotesAway();
    QCoro::waitFor(model->load());
    ASSERT_TRUE(waitUntil([this] { return model->isUnreadable.value(); }));
    EXPECT_THAT(move(target).sentence, HasSubstr("can’t be looked into"));
    model.putNotesBack();
    EXPECT_FALSE(fs::exists(target));
}

} // namespace
} // namespace varnic
