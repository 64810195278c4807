#include "Varnic/Views/LibraryViews/NoteSummary.h"

#include <gmock/gmock.h>

namespace varnic {
namespace {

struct DateCase {
    const char* name;
    const char* date;
    const char* now;
    const char* zone;
    const char* text;
};

class RelativeDates : public testing::TestWithParam<DateCase> {};

TEST_P(RelativeDates, are_seen_from_today) {
    const DateCase& now = GetParam();
    EXPECT_EQ(NoteSummaries::relative(parseDate(now.date), parseDate(now.now), {"en_GB", now.zone}), now.text);
}

INSTANTIATE_TEST_SUITE_P(
    Dates, RelativeDates,
    testing::Values(
        DateCase{"today", "2026-03-10T08:05:00Z", "2026-03-10T23:59:00Z", "UTC", "08:05"},
        DateCase{"midnight", "2026-03-10T00:00:00Z", "2026-03-10T23:59:00Z", "UTC", "00:00"},
        DateCase{"just_before_midnight", "2026-03-09T23:59:59.999Z", "2026-03-10T00:00:00Z", "UTC", "Yesterday"},
        DateCase{"two_days_ago", "2026-03-08T23:59:00Z", "2026-03-10T00:00:00Z", "UTC", "8 Mar"},
        DateCase{"this_year", "2026-01-01T00:00:00Z", "2026-03-10T00:00:00Z", "UTC", "1 Jan"},
        DateCase{"last_year", "2025-12-31T23:59:00Z", "2026-03-10T00:00:00Z", "UTC", "31 Dec 2025"},
        DateCase{"yesterday_was_last_year", "2025-12-31T12:00:00Z", "2026-01-01T12:00:00Z", "UTC", "Yesterday"},
        DateCase{"tomorrow", "2026-03-11T12:00:00Z", "2026-03-10T12:00:00Z", "UTC", "11 Mar"},
        DateCase{"the_day_is_the_users", "2026-03-09T23:30:00Z", "2026-03-10T12:00:00Z", "Europe/Berlin", "00:30"}),
    [](const auto& one) { return one.param.name; });

Note noteOf(std::vector<Block> blocks, bool isCall = false) {
    return {Uuid::random(), "Plan", currentDate(), std::move(blocks),
            isCall ? std::optional(CallRecord{.duration = 720, .segments = {{Speaker::you, 0, 2, "Hello"}}})
                   : std::nullopt};
}

TEST(NoteSummary, plain_note_shows_its_first_texts) {
    EXPECT_EQ(NoteSummaries::of(noteOf({Block{.text = "  "}}), std::nullopt).preview, "Empty note");
    EXPECT_EQ(NoteSummaries::of(noteOf({Block{.kind = BlockKind::heading, .text = "Goals"}, Block{},
                                        Block{.kind = BlockKind::todo, .text = "Ship\nit"}}),
                                std::nullopt)
                  .preview,
              "Goals Ship it");
    EXPECT_EQ(NoteSummaries::of(noteOf({Block::table({{"Who", "When"}, {"Ann", "Now"}})}), std::nullopt).preview,
              "Who When");
}

TEST(NoteSummary, cards_without_a_front_are_none) {
    EXPECT_EQ(NoteSummaries::of(noteOf({Block::flashcard("Q", "A"), Block::flashcard("", "A")}), std::nullopt).cards,
              "1 card");
    EXPECT_EQ(NoteSummaries::of(noteOf({Block::flashcard("", "A")}), std::nullopt).cards, "");
}

TEST(NoteSummary, call_counts_its_open_todos) {
    const NoteSummary call = NoteSummaries::of(noteOf({Block{.kind = BlockKind::todo, .text = "Send it"},
                                                       Block{.kind = BlockKind::todo, .text = "Done", .done = true}},
                                                      true),
                                               ProcessingStage::summarising());
    EXPECT_EQ(call.todos, "1 to-do");
    EXPECT_EQ(call.length, "12 min");
    EXPECT_EQ(call.preview, "");
    EXPECT_EQ(call.stage.toStdString(), ProcessingStage::summarising().label());
    EXPECT_EQ(call.lines, 1U);
}

} // namespace
} // namespace varnic
