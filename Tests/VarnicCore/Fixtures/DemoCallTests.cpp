#include "VarnicCore/Fixtures/DemoCall.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Text/TextKit.h"

#include <gmock/gmock.h>

namespace varnic {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

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
