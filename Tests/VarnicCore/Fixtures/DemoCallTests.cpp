#include "VarnicCore/Fixtures/DemoCall.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Text/TextKit.h"

#include <gmock/gmock.h>

namespace varnic {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

TEST(DemoCall, segments_ofPaceOne_lastByTheirWords) {
    const std::vector<Segment> segments = DemoCall::segments(0, 1);
    ASSERT_EQ(segments.size(), 13U);
    EXPECT_EQ(segments[0].start, 0);
    EXPECT_NEAR(segments[0].end, 2.92, 1e-9);
    EXPECT_NEAR(segments[1].start, 3.62, 1e-9);
    EXPECT_NE(segments[0].id, segments[1].id);
}

TEST(DemoCall, script_sides_takeTurns) {
    const auto script = DemoCall::script();
    EXPECT_EQ(script.at(Speaker::you).size(), 6U);
    EXPECT_EQ(script.at(Speaker::you)[0], DemoCall::lines()[1].second);
    EXPECT_EQ(script.at(Speaker::them).size(), 7U);
    for (std::size_t line = 0; line < DemoCall::lines().size(); ++line) {
        EXPECT_EQ(DemoCall::lines()[line].first, line % 2 == 0 ? Speaker::them : Speaker::you);
    }
}

TEST(DemoCall, digest_findsWhatTheCallIsAbout) {
    const ExtractiveSummariser summariser;
    const CallDigest digest = summariser.digest(DemoCall::segments(0, 1), {.yourName = "Tara", .themName = "Mira"}, {});
    std::vector<std::pair<std::string, std::optional<std::string>>> todos;
    for (const ActionItem& item : digest.actions) {
        todos.emplace_back(item.text, item.due);
    }
    EXPECT_THAT(todos, Contains(std::pair("Update the pricing page tomorrow", std::optional<std::string>("tomorrow"))));
    EXPECT_THAT(digest.actions, Contains(::testing::AllOf(::testing::Field(&ActionItem::owner, Speaker::you),
                                                          ::testing::Field(&ActionItem::due, "Friday"))));
    EXPECT_THAT(digest.title, ::testing::AnyOf(HasSubstr("ricing"), HasSubstr("nboarding")));
    EXPECT_THAT(digest.summary, Contains(HasSubstr("decided")));
}

} // namespace
} // namespace varnic
