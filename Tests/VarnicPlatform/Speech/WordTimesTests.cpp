#include "VarnicPlatform/Speech/WordTimes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

using VoiceActivity::Range;

struct Spreading {
    std::string what;
    std::string text;
    std::vector<Range> voiced;
    /// The start of each word.
    std::vector<double> starts;
};

TEST(WordTimes, spread_overVoicedRuns_keepsPausesBetweenWords) {
    const std::vector<Spreading> spreadings{
        {"no text", " ", {{0, 1}}, {}},
        {"no voice", "one", {}, {}},
        {"by length", "abc abcdefg", {{10, 13}}, {10, 11}},
        {"a pause at the even place", "abc abc abc", {{0, 2}, {3, 4}}, {0, 1, 3}},
        {"the pause goes to the punctuation", "abc abc. abc abc", {{0, 1.5}, {2, 4.5}}, {0, 0.6667, 2, 3.25}},
        {"and not to far away punctuation", "a. abc abc abc abc", {{0, 4}, {4.3, 5}}, {0, 0.8, 1.8667, 2.9333, 4.3}},
        {"a run too short for a word", "abcdefghi", {{0, 2}, {2.5, 2.6}}, {0}},
        {"words without spaces", "今日は会議です。明日も", {{0, 4}, {5, 7}}, {0, 1, 1.5, 2.5, 5, 6}},
    };
    for (const auto& [what, text, voiced, starts] : spreadings) {
        SCOPED_TRACE(what);
        const std::vector<TimedWord> words = WordTimes::spread(text, voiced);
        ASSERT_EQ(words.size(), starts.size());
        for (std::size_t index = 0; index < words.size(); ++index) {
            EXPECT_NEAR(words[index].start, starts[index], 0.001) << words[index].text;
            EXPECT_GT(words[index].duration, 0);
            EXPECT_LE(words[index].end(), voiced.back().end + 0.001);
        }
    }
}

TEST(WordTimes, fit_wordsWithPauses_beginAndEndWithTheirVoice) {
    std::vector<TimedWord> words{{"early", 0, 1.5}, {"late", 1.5, 0.5}, {"within", 2, 0.2}, {"unheard", 2.6, 0.3},
                                 {"over", 3, 2},    {"afar", 5.1, 0.5}, {"off", 6.2, 0.3}};
    WordTimes::fit(words, {{1.2, 1.7}, {1.8, 2.5}, {3.1, 3.4}, {3.6, 4}, {6, 6.4}});
    const std::vector<TimedWord> fitted{{"early", 1.2, 0.3},   {"late", 1.5, 0.5}, {"within", 2, 0.5},
                                        {"unheard", 2.6, 0.3}, {"over", 3.1, 0.9}, {"afar", 6, 0.2},
                                        {"off", 6.2, 0.2}};
    for (std::size_t index = 0; index < words.size(); ++index) {
        EXPECT_NEAR(words[index].start, fitted[index].start, 1e-9) << words[index].text;
        EXPECT_NEAR(words[index].duration, fitted[index].duration, 1e-9) << words[index].text;
    }
}

} // namespace
} // namespace varnic
