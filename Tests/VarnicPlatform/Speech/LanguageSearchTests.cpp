#include "VarnicPlatform/Speech/LanguageSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace varnic {
namespace {

using LanguageSearch::Heard;
using testing::ElementsAre;

/// Speech of so many seconds; its samples say what it is in, by its initial.
struct Stretch {
    double seconds = 0;
    char language = 'e';
};

struct Case {
    const char* what;
    std::vector<Stretch> said;
    std::string language;
};

TEST(LanguageSearch, heard_isWhatTheLongestStretchesAreIn) {
    const std::vector<Case> cases{{"nobody speaks", {}, ""},
                                  {"one language", {{4, 'd'}, {3, 'd'}}, "d"},
                                  {"too little of it", {{2, 'd'}, {2, 'd'}}, ""},
                                  {"words in passing don’t count, however many",
                                   {{1.4, 'd'}, {1.4, 'd'}, {1.4, 'd'}, {1.4, 'd'}, {1.4, 'd'}},
                                   ""},
                                  {"most of the time, not most often", {{3, 'd'}, {20, 'f'}, {3, 'd'}, {3, 'd'}}, "f"},
                                  {"the longest, wherever they are",
                                   {{6, 'd'}, {6, 'd'}, {9, 'f'}, {6, 'd'}, {6, 'd'}, {6, 'd'}, {9, 'f'}, {9, 'f'}},
                                   "f"},
                                  {"no model knows it", {{20, 'x'}, {6, 'd'}}, "d"},
                                  {"the model has no answer", {{20, '?'}}, ""}};
    for (const auto& [what, said, language] : cases) {
        LanguageSearch::Stretches stretches;
        double seconds = 0;
        for (const Stretch& stretch : said) {
            const auto samples = static_cast<std::size_t>(stretch.seconds * LanguageIdentifier::rate);
            stretches.add(std::vector<float>(samples, static_cast<float>(stretch.language)));
            seconds += stretch.seconds;
        }
        std::vector<std::size_t> asked;
        const auto identify = [&asked](std::span<const float> samples) -> std::optional<std::string> {
            asked.push_back(samples.size());
            const auto initial = static_cast<char>(samples.front());
            return initial == '?' ? std::nullopt : std::optional(std::string(1, initial));
        };
        const Heard heard = stretches.heard(identify, [](std::string_view one) { return one != "x"; });
        EXPECT_EQ(heard.language, language) << what;
        EXPECT_NEAR(heard.seconds, seconds, 1e-3) << what;
        EXPECT_LE(asked.size(), 5U) << what;
    }
}

TEST(LanguageSearch, together_sidesThatDoNotTellFollowTheOther) {
    struct Both {
        Heard you;
        Heard them;
        SpokenLanguages spoken;
    };

    const std::vector<Both> cases{
        {{"", 3}, {"", 0}, {"en-GB", "en-GB", "en-GB"}}, {{"de", 9}, {"", 4}, {"de", "de", "de"}},
        {{"", 30}, {"fr", 9}, {"fr", "fr", "fr"}},       {{"de", 9}, {"fr", 8}, {"de", "fr", "de"}},
        {{"de", 9}, {"fr", 10}, {"de", "fr", "fr"}},     {{"en", 9}, {"", 0}, {"en-GB", "en-GB", "en-GB"}},
        {{"en", 9}, {"de", 60}, {"en-GB", "de", "de"}},
    };
    for (const auto& [you, them, spoken] : cases) {
        const SpokenLanguages found = LanguageSearch::together(you, them, "en-GB");
        EXPECT_THAT((std::vector{found.you, found.them, found.call}),
                    ElementsAre(spoken.you, spoken.them, spoken.call));
    }
}

} // namespace
} // namespace varnic
