#include "VarnicCore/Transcript/Utterances.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

struct Line {
    double start;
    double end;
    std::string text;
    bool operator==(const Line&) const = default;
};

void PrintTo(const Line& line, std::ostream* out) {
    *out << line.start << "-" << line.end << " " << line.text;
}

std::vector<Line> build(const std::vector<TimedWord>& words, const std::optional<std::string>& formatted = {},
                        double offset = 0) {
    std::vector<Line> lines;
    for (const Segment& segment : Utterances::build(words, formatted, Speaker::them, offset, 1.2)) {
        EXPECT_EQ(segment.speaker, Speaker::them);
        lines.push_back({segment.start, segment.end, segment.text});
    }
    return lines;
}

/// Words of 0.25 seconds, one every half second.
std::vector<TimedWord> evenWords(std::size_t count, const std::string& text) {
    std::vector<TimedWord> words;
    for (std::size_t i = 0; i < count; ++i) {
        words.push_back({text, static_cast<double>(i) * 0.5, 0.25});
    }
    return words;
}

TEST(Utterances, build_takesTextFromTheFormattedFormAndTimesFromTheWords) {
    EXPECT_THAT(build({{"hello", 1, 0.5}, {"there", 1.5, 0.25}}, "Hello there.", 10),
                ElementsAre(Line{11, 11.75, "Hello there."}));
    EXPECT_THAT(build({{"hello", 1, 0.5}}), ElementsAre(Line{1, 1.5, "hello"}));
    EXPECT_TRUE(build({}, "Hello").empty());
    EXPECT_TRUE(build({{"hello", 1, 0.5}}, "").empty());
    EXPECT_TRUE(build({{"hello", 1, 0.5}}, " \n\u3000").empty());
}

TEST(Utterances, build_punctuationTokenUsesNoWordUp) {
    // The dash and "yes" both fall on the word behind the pause, which starts a line of its own.
    EXPECT_THAT(build({{"well", 0, 0.5}, {"yes", 3, 0.5}}, "Well — yes"),
                ElementsAre(Line{0, 0.5, "Well"}, Line{3, 3.5, "— yes"}));
    // Surplus tokens take the last word's times.
    EXPECT_THAT(build({{"one", 0, 0.5}, {"two", 0.5, 0.5}}, "one two three four"),
                ElementsAre(Line{0, 1, "one two three four"}));
}

TEST(Utterances, build_splitsAtPausesAndSentenceEnds) {
    EXPECT_EQ(build({{"a", 0, 0.25}, {"b", 1.45, 0.25}}).size(), 1U); // a pause of exactly 1.2
    EXPECT_EQ(build({{"a", 0, 0.25}, {"b", 1.5, 0.25}}).size(), 2U);
    EXPECT_EQ(build({{"okay", 0, 0.5}, {"fine", 0.7, 0.5}}, "Okay. Fine.").size(), 1U);
    EXPECT_EQ(build({{"okay", 0, 0.5}, {"fine", 1, 0.5}}, "Okay. Fine.").size(), 2U);
}

TEST(Utterances, build_longRunIsCutAtTheFirstSentenceEndPastThirtyTokens) {
    const auto lines = build(evenWords(70, "so."));
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].text.size(), 31 * 4U - 1);
    EXPECT_DOUBLE_EQ(lines[1].start, 15.5);
}

TEST(Utterances, build_withoutSpaces_linesEndWithSentencesToo) {
    const std::vector<TimedWord> words{{"今日", 0, 0.5},           {"は", 0.5, 0.2, true}, {"会議", 0.7, 0.5, true},
                                       {"です。", 1.2, 0.3, true}, {"明日", 2, 0.5, true}, {"も", 2.5, 0.2, true}};
    EXPECT_THAT(build(words), ElementsAre(Line{0, 1.5, "今日は会議です。"}, Line{2, 2.7, "明日も"}));
    EXPECT_THAT(build(words, "今日は会議です。明日も"),
                ElementsAre(Line{0, 1.5, "今日は会議です。"}, Line{2, 2.7, "明日も"}));
}

TEST(Utterances, build_overlappingWordsKeepTheLargestEnd) {
    EXPECT_THAT(build({{"long", 0, 5}, {"inside", 1, 0.5}, {"behind", 6, 0.5}}),
                ElementsAre(Line{0, 6.5, "long inside behind"}));
}

} // namespace
} // namespace varnic
