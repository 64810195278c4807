#include "VarnicCore/Text/NounTagger.h"

#include "VarnicCore/Text/SpeechTagger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <simdjson.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

std::vector<std::string> nouns(const NounTagger& tagger, std::string_view text) {
    std::vector<std::string> found;
    for (const auto& [word, isNoun] : tagger(text)) {
        if (isNoun) {
            found.push_back(word);
        }
    }
    return found;
}

std::vector<std::string> labels(const SpeechTagger& tagger, const std::vector<std::string>& words) {
    std::vector<std::string> names;
    for (const auto label : tagger.tag(words)) {
        names.push_back(tagger.name(label));
    }
    return names;
}

SpeechTagger taggerOf(const std::string& json) {
    const simdjson::padded_string padded(json);
    return SpeechTagger(std::string_view(padded.data(), padded.size()));
}

TEST(NounTagger, english_findsTheNounsOfCallTalk) {
    struct Case {
        std::string text;
        std::vector<std::string> nouns;
    };

    const std::vector<Case> cases{
        {"We need to finalise the launch date.", {"launch", "date"}},
        {"The pricing page needs an update", {"pricing", "page", "update"}},
        {"Let's review the onboarding designs", {"onboarding", "designs"}},
        {"I’ll send the designs by Friday. Could you ask QA?", {"designs", "Friday", "QA"}},
        {"I don't think the customer's dashboard won't load the invoices.", {"customer's", "dashboard", "invoices"}},
        {"they're here, aren't they?", {}},
        {"", {}},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(nouns(englishNounTagger(), text), expected) << text;
    }
}

TEST(NounTagger, english_givesEveryWordOnce) {
    std::string words;
    for (const auto& [word, isNoun] : englishNounTagger()("Don’t — I’ll pay $40! 🎉 \xFF Café’s “QBR”.\r\nOK 'll")) {
        words += word + "|";
    }
    EXPECT_EQ(words, "Don’t|I’ll|pay|40|Café’s|QBR|OK|ll|");
}

TEST(NounTagger, fixed_comparesInLowerCase) {
    EXPECT_THAT(nouns(fixedNounTagger({"budget", "été"}), "The BUDGET of Été, budgets."), ElementsAre("BUDGET", "Été"));
}

TEST(NounTagger, english_servesManyThreads) {
    const std::string text = "The pricing page needs an update. Let's review the onboarding designs.";
    const auto expected = englishNounTagger()(text);
    std::vector<std::jthread> threads;
    threads.reserve(4);
    std::vector<std::vector<TaggedWord>> found(4);
    for (auto& words : found) {
        threads.emplace_back([&] { words = englishNounTagger()(text); });
    }
    threads.clear();
    EXPECT_THAT(found, testing::Each(expected));
}

TEST(SpeechTagger, features_areThoseOfTheModel) {
    // The models know one feature each: where it matches, the word is an A, elsewhere the labels tie and Z wins.
    struct Case {
        std::string feature;
        std::vector<std::string> words;
        std::vector<std::string> labels;
    };

    const std::vector<Case> cases{
        {"bias", {"a", "b"}, {"A", "A"}},
        {"suf3 fé1", {"Café1", "fé1", "é1"}, {"A", "A", "Z"}},
        {"suf3 ab", {"ab", "cab"}, {"A", "Z"}},
        {"suf2 fé", {"CAFÉ", "é"}, {"A", "Z"}},
        {"suf1 é", {"É", "e"}, {"A", "Z"}},
        {"pre1 é", {"Été", "été", "ete"}, {"A", "A", "Z"}},
        {"shape X", {"Été", "été", "Q3"}, {"A", "Z", "Z"}},
        {"shape Xd", {"Q3", "q3", "3Q"}, {"A", "Z", "Z"}},
        {"shape xd", {"q3", "3Q", "x"}, {"A", "A", "Z"}},
        {"w été", {"Été", "Éte"}, {"A", "Z"}},
        {"t-1 <s>", {"a", "b"}, {"A", "Z"}},
        {"t-1 A", {"sure", "b", "b"}, {"A", "A", "A"}},
        {"t-2 <s>", {"a", "b", "c"}, {"A", "A", "Z"}},
        {"t-1t-2 Z <s>", {"a", "b", "c"}, {"Z", "A", "Z"}},
        {"w-1 a", {"A", "b", "c"}, {"Z", "A", "Z"}},
        {"w-2 <s>", {"a", "b", "c"}, {"A", "A", "Z"}},
        {"w+1 </s>", {"a", "b"}, {"Z", "A"}},
        {"w+2 c", {"a", "b", "C"}, {"A", "Z", "Z"}},
        {"t-1 w Z b", {"a", "B", "b"}, {"Z", "A", "Z"}},
    };
    for (const auto& [feature, words, expected] : cases) {
        const auto tagger = taggerOf(R"({"classes": ["Z", "A", "M"], "tagdict": {"sure": "A"}, "vocabulary": [],
            "weights": {")" + feature +
                                     R"(": {"A": 0.001, "M": -1}}})");
        EXPECT_EQ(labels(tagger, words), expected) << feature;
    }
}

TEST(SpeechTagger, model_thatIsBroken_isRefused) {
    for (const char* json : {"", "[]", "{}", R"({"classes": []})", R"({"classes": ["A"], "tagdict": {"a": "B"}})",
                             R"({"classes": ["A"], "tagdict": {}, "weights": {"bias": {"B": 1}}})",
                             R"({"classes": ["A"], "tagdict": {}, "weights": {"bias": {"A": "x"}}})"}) {
        EXPECT_THROW(taggerOf(json), std::runtime_error) << json;
    }
}

} // namespace
} // namespace varnic
