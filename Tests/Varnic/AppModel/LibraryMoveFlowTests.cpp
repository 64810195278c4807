#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/AppModel/CallFlows.h"
#include "VarnicCore/FileSizeLimit.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace varnic {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class LibraryMoveFlowTests : public CallFlowsTests {
protected:
    LibraryMoveFlowTests() { model.load(); }

    AppModel::LibraryMoved move(const fs::path& to) { return QCoro::waitFor(model->moveLibrary(to)); }

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
