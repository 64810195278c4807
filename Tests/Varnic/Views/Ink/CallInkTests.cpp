#include "Varnic/Views/Ink/CallInk.h"

#include <gmock/gmock.h>

#include <tuple>

namespace varnic {
namespace {

TEST(CallInk, wordsAt_areOfTheTurnThatIsHeard) {
    CallRecord call;
    call.segments = {{Speaker::you, 1, 2, "Good"},
                     {Speaker::you, 3.5, 4, "morning."},
                     {Speaker::them, 3.8, 6, "Hi!"},
                     {Speaker::you, 10, 11, "Well."}};
    const CallInk ink(call);
    for (const auto& [time, words, isYours] :
         {std::tuple(0.9, "", false), std::tuple(1.0, "Good morning.", true), std::tuple(3.0, "Good morning.", true),
          std::tuple(3.6, "morning.", true), std::tuple(3.9, "Hi!", false), std::tuple(6.4, "Hi!", false),
          std::tuple(6.6, "", false), std::tuple(11.4, "Well.", true), std::tuple(60.0, "", false)}) {
        EXPECT_EQ(ink.wordsAt(time).toStdString(), words) << time;
        EXPECT_EQ(ink.isYoursAt(time), isYours) << time;
    }
    EXPECT_EQ(CallInk().wordsAt(0), "");
}

TEST(CallInk, wordsAt_aLongTurn_isCutBetweenWords) {
    CallRecord call;
    std::string text;
    for (int i = 0; i < 100; ++i) {
        text += "größer ";
    }
    call.segments = {{Speaker::them, 0, 60, text}};
    const QString words = CallInk(call).wordsAt(30);
    EXPECT_GT(words.size(), 80);
    EXPECT_LT(words.size(), 200);
    EXPECT_TRUE(words.endsWith("größer"));
}

} // namespace
} // namespace varnic
