#include "Varnic/DemoData/DemoData.h"

#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Library/Flashcards.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace varnic {
namespace {

using testing::Contains;
using testing::Field;
using testing::SizeIs;

const Region region{.locale = "en_GB", .timeZone = "Asia/Kolkata"};
const Date now = parseDate("2026-03-14T09:26:53Z");

const Note& named(const std::vector<Note>& notes, std::string_view title) {
    const auto found = std::ranges::find(notes, title, &Note::title);
    if (found == notes.end()) {
        throw std::runtime_error("no note of that title");
    }
    return *found;
}

TEST(DemoData, notes_areOfTheDaysUpToNow) {
    const std::vector<Note> notes = DemoData::notes(now, region);
    ASSERT_THAT(notes, SizeIs(8));
    const Note& launch = notes.front();
    EXPECT_TRUE(launch.pinned);
    EXPECT_EQ(region.format(launch.created, "yyyy-MM-dd HH:mm"), "2026-03-14 11:00");
    EXPECT_EQ(launch.call->themName, "Mira");
    EXPECT_TRUE(launch.call->digest->isLocal);
    EXPECT_THAT(
        launch.blocks,
        Contains(Field(&Block::text, "Mira sounded keen on the bundle — check the Intel numbers before Friday.")));
    EXPECT_THAT(notes, testing::Each(Field(&Note::modified, testing::Le(now))));
    const Note& review = named(notes, "Library design review");
    EXPECT_EQ(region.format(review.created, "yyyy-MM-dd HH:mm"), "2026-03-14 09:00");
    EXPECT_EQ(review.call->digest->provider, "Claude Haiku 5.5");
    EXPECT_THAT(review.todos(), Contains(Field(&Block::due, "Thursday")));
    EXPECT_LT(named(notes, "Interview with Owen").created, region.startOfDay(region.day(now)));
}

TEST(DemoData, notes_someCardsAreDueAndOthersRest) {
    const std::vector<Note> notes = DemoData::notes(now, region);
    const auto deck = Flashcards::deckOf(named(notes, "Cell biology — week 6"), now);
    ASSERT_TRUE(deck);
    EXPECT_EQ(deck->total, 4);
    EXPECT_EQ(deck->due, 2);
}

TEST(DemoData, load_showsTheLibraryAndWritesNothing) {
    ScratchModel model;
    const auto files = [&] {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(model.folder())) {
            if (entry.is_regular_file()) {
                found.push_back(entry.path());
            }
        }
        return found;
    };
    DemoData::load(*model);
    EXPECT_TRUE(model->isDemo);
    EXPECT_EQ(model->selection.value(), model->visibleNotes().front()->id);
    EXPECT_TRUE(model->visibleNotes().front()->pinned);
    EXPECT_EQ(model->settings.yourName.value(), "Tara");
    EXPECT_TRUE(model->settings.consentSeen.value());
    EXPECT_FALSE(model->openTodos().empty());
    model->update(*model->selection.value(), true, [](Note& note) { note.title = "Mine"; });
    model->newNote("New");
    model->flushSaves();
    EXPECT_TRUE(model->settings.save());
    EXPECT_THAT(files(), testing::IsEmpty());
}

TEST(DemoData, showLive_bothSidesAndALineThatIsBeingSpoken) {
    RecordingController recorder;
    DemoData::showLive(recorder, 754, "Zoom", 5);
    EXPECT_TRUE(isRecording(recorder.state()));
    EXPECT_EQ(recorder.elapsed(), 754);
    EXPECT_THAT(recorder.samples(), SizeIs(RecordingController::samplesKept));
    EXPECT_THAT(recorder.samples(), Contains(Field(&InkSample::you, testing::Gt(0.5F))));
    EXPECT_THAT(recorder.samples(), Contains(Field(&InkSample::them, testing::Gt(0.3F))));
    ASSERT_THAT(recorder.committed(), SizeIs(5));
    const Segment& partial = recorder.partial().at(Speaker::you).front();
    EXPECT_EQ(partial.text, "On pricing, we are thinking fifteen hundred rupees");
    EXPECT_LE(recorder.committed().back().end, partial.start);
    EXPECT_LE(partial.end, recorder.elapsed());
    recorder.clearDemo();
    DemoData::showLive(recorder, 3, "Google Meet", 0);
    EXPECT_THAT(recorder.committed(), testing::IsEmpty());
    EXPECT_GE(recorder.partial().at(Speaker::you).front().start, 0);
}

} // namespace
} // namespace varnic
