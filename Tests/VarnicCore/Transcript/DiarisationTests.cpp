#include "VarnicCore/Transcript/Diarisation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

std::vector<std::string> texts(const std::vector<Segment>& segments) {
    std::vector<std::string> found;
    for (const Segment& segment : segments) {
        found.push_back(std::string(rawValue(segment.speaker)) + ": " + segment.text);
    }
    return found;
}

Segment you(double start, double end, const std::string& text) {
    return {Speaker::you, start, end, text};
}

Segment them(double start, double end, const std::string& text) {
    return {Speaker::them, start, end, text};
}

TEST(Diarisation, merge_dropsOnlyYourEchoOfThem) {
    struct Case {
        std::string name;
        Segment yours;
        Segment theirs;
        std::size_t kept;
    };

    const std::string text = "The budget launch is moved";
    const std::vector<Case> cases{
        {"overlap above 40 % of the shorter", you(5.8, 15.8, text), them(0, 10, text), 1},
        {"a short line within a long one", you(4, 5, text), them(0, 10, text), 1},
        {"overlap of exactly 40 %", you(6, 16, text), them(0, 10, text), 2},
        {"same words at another time", you(20, 30, text), them(0, 10, text), 2},
        {"other words at the same time", you(0, 10, "Let me find my headphones"), them(0, 10, text), 2},
        {"theirs without length counts as a hundredth of a second", you(0, 10, text), them(5, 5, text), 2},
        {"half of the words alike", you(0, 10, "budget launch moved"),
         them(0, 10, "budget launch moved again tonight ran"), 1},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(Diarisation::merge({one.yours}, {one.theirs}, 0.5).size(), one.kept) << one.name;
    }
}

TEST(Diarisation, merge_ordersByStartWithYouFirstAndDropsBlankLines) {
    const auto merged = Diarisation::merge({you(4, 5, "second"), you(2, 3, "first"), you(0, 1, " \n")},
                                           {them(4, 6, "third"), them(1, 2, "zeroth"), them(3, 4, "\u2028")}, 0.5);
    EXPECT_THAT(texts(merged), ElementsAre("them: zeroth", "you: first", "you: second", "them: third"));
}

TEST(Diarisation, turns_joinsOneSpeakersNeighbouringLines) {
    const std::vector<Segment> lines{you(0, 2, "So."),   you(4, 5, "Then."),   you(7.1, 8, "Later."),
                                     them(8, 9, "Yes."), you(8.5, 9, "Good."), you(3, 4, "Back.")};
    const auto turns = Diarisation::turns(lines, 2);
    EXPECT_THAT(texts(turns), ElementsAre("you: So. Then.", "you: Later.", "them: Yes.", "you: Good. Back."));
    EXPECT_EQ(turns[0].id, lines[0].id);
    EXPECT_EQ(turns[0].end, 5);
    EXPECT_EQ(turns[3].end, 9);
    EXPECT_TRUE(Diarisation::turns({}, 2).empty());
}

TEST(Diarisation, placeIn_isBeforeTheLineThatIsSaid) {
    const std::vector<Segment> lines{you(0, 2, "So."), you(4, 5, "Then."), you(5, 6, "Soon."), you(8.5, 9, "Late."),
                                     them(9, 10, "Yes.")};
    const auto turns = Diarisation::turns(lines, 2);
    ASSERT_THAT(texts(turns), ElementsAre("you: So. Then. Soon.", "you: Late.", "them: Yes."));
    for (const auto& [turn, time, words] :
         {std::tuple(0U, -1.0, "So. Then. Soon."), std::tuple(0U, 3.9, "So. Then. Soon."),
          std::tuple(0U, 4.0, "Then. Soon."), std::tuple(0U, 60.0, "Soon."), std::tuple(1U, 60.0, "Late."),
          std::tuple(2U, 9.0, "Yes.")}) {
        EXPECT_EQ(turns[turn].text.substr(Diarisation::placeIn(turns[turn], lines, time)), words) << time;
    }
}

TEST(Diarisation, activity_isTheSpokenFractionOfEachSlice) {
    using Diarisation::Activity;
    const std::vector<Segment> lines{you(0, 3, "a"), them(3, 8, "b"), you(0.5, 2, "c"), them(-4, -3, "d"),
                                     them(1e300, 1e301, "e")};
    EXPECT_THAT(Diarisation::activity(lines, 8, 4),
                ElementsAre(Activity{1, 0}, Activity{0.5, 0.5}, Activity{0, 1}, Activity{0, 1}));
    EXPECT_TRUE(Diarisation::activity(lines, 8, 0).empty());
    EXPECT_TRUE(Diarisation::activity(lines, 0, 4).empty());
    EXPECT_TRUE(Diarisation::activity({Segment(Speaker::you, 0, 1, "x")}, 5e-324, 4).empty());
    EXPECT_THAT(Diarisation::activity({}, 8, 2), ElementsAre(Activity{}, Activity{}));
}

} // namespace
} // namespace varnic
