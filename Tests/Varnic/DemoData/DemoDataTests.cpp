#include "Varnic/DemoData/DemoData.h"

#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Library/Flashcards.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

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
    EXPECT_THAT(notes, testing::Each(Field(&Note::modified, testing::Le(now))));
    EXPECT_LT(named(notes, "Interview with Owen").created, region.startOfDay(region.day(now)));
}

TEST(DemoData, notes_someCardsAreDueAndOthersRest) {
    const std::vector<Note> notes = DemoData::notes(now, region);
    const auto deck = Flashcards::deckOf(named(notes, "Cell biology — week 6"), now);
    ASSERT_TRUE(deck);
    EXPECT_EQ(deck->total, 4);
    EXPECT_EQ(deck->due, 2);
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
    EXPECT_LE(recorder.committed().back().end, partial.start);
    EXPECT_LE(partial.end, recorder.elapsed());
    recorder.clearDemo();
    DemoData::showLive(recorder, 3, "Google Meet", 0);
    EXPECT_THAT(recorder.committed(), testing::IsEmpty());
    EXPECT_GE(recorder.partial().at(Speaker::you).front().start, 0);
}

} // namespace
} // namespace varnic
