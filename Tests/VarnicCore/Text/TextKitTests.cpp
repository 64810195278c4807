#include "VarnicCore/Text/TextKit.h"

#include "VarnicCore/Text/WordProfile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(TextKit, stopWords_areDistinctAndLowerCased) {
    EXPECT_EQ(TextKit::stopWords().size(), 242U);
    EXPECT_TRUE(TextKit::stopWords().contains("would"));
    EXPECT_TRUE(TextKit::stopWords().contains("i'll"));
    EXPECT_FALSE(TextKit::stopWords().contains("budget"));
}

TEST(TextKit, fold_dropsCaseMarksAndWidth) {
    const Pairs cases{
        {"", ""},
        {"Plain ASCII, 42%\r\n", "plain ascii, 42%\r\n"},
        {"Don’t “shout” — now…", "don't “shout” — now…"},
        {"Café", "cafe"},
        {"Cafe\u0301", "cafe"},
        {"a\u0301\u0328b", "ab"},
        {"Straße", "strasse"},
        {"STRASSE", "strasse"},
        {"İstanbul ILIK ılık", "istanbul ilik ılık"},
        {"ＡＢＣ１２３＇", "abc123'"},
        {"ｶﾞ ガ", "カ カ"},
        {"①ﬁ²", "①fi²"},
        {"ΣΊΣΥΦΟΣ σίσυφος", "σισυφοσ σισυφοσ"},
        {"ᾳ", "αι"},
        {"한국어", "한국어"},
        {"👩‍👩‍👧 OK", "👩‍👩‍👧 ok"},
        {"Ok\xFF\xC3", "ok\uFFFD\uFFFD"},
    };
    for (const auto& [text, folded] : cases) {
        EXPECT_EQ(TextKit::fold(text), folded) << text;
        EXPECT_EQ(TextKit::fold(folded), folded) << text;
    }
}

TEST(TextKit, sentences_areTrimmedAndKeepTheSpeakersCharacters) {
    EXPECT_THAT(TextKit::sentences("  It’s done. Is it? Yes!\r\n\r\n"), ElementsAre("It’s done.", "Is it?", "Yes!"));
    EXPECT_THAT(TextKit::sentences("Ask Mr. Smith about 3.5 percent. Then go."),
                ElementsAre("Ask Mr. Smith about 3.5 percent.", "Then go."));
    EXPECT_THAT(TextKit::sentences("One\ntwo"), ElementsAre("One", "two"));
    EXPECT_THAT(TextKit::sentences("Ship it 🎉. Café!"), ElementsAre("Ship it 🎉.", "Café!"));
    EXPECT_THAT(TextKit::sentences("So \xFF. But \xE2\x80."), ElementsAre("So \xFF.", "But \xE2\x80."));
    EXPECT_THAT(TextKit::sentences(" \n\t "), IsEmpty());
}

TEST(TextKit, sentences_ofALanguage_endByItsRules) {
    struct Case {
        std::string language;
        std::string text;
        std::size_t count;
    };

    for (const auto& [language, text, count] :
         {Case{"de", "Wir treffen evtl. Anna. Danach essen wir.", 2},
          Case{"en", "Wir treffen evtl. Anna. Danach essen wir.", 3},
          Case{"fr-CA", "Voici M. Dupont. Il part demain.", 2}, Case{"ja", "今日は会議です。明日も会議です。", 2},
          Case{"zh", "今天开会。你来吗？来！", 3}, Case{"hi", "आज बैठक है। कल भी है।", 2},
          Case{"nothing at all", "One. Two.", 2}}) {
        EXPECT_EQ(TextKit::sentences(text, language).size(), count) << language << ": " << text;
    }
}

TEST(TextKit, isLongWord_byTheLengthsOfItsScript) {
    for (const auto& [word, isLong] : {std::pair("und", false), std::pair("Preis", true), std::pair("2026", false),
                                       std::pair("価格", true), std::pair("は", false), std::pair("", false)}) {
        EXPECT_EQ(TextKit::isLongWord(word), isLong) << word;
    }
}

TEST(TextKit, words_keepInnerApostrophesAndDigits) {
    EXPECT_THAT(TextKit::words("I’ll pay $40, don't I?"), ElementsAre("i'll", "pay", "40", "don't", "i"));
    EXPECT_THAT(TextKit::words("Q3 budget budget"), ElementsAre("q3", "budget", "budget"));
    EXPECT_THAT(TextKit::words("🎉 — ‘ÉTÉ’ \xFF x"), ElementsAre("été", "x"));
    EXPECT_THAT(TextKit::words(""), IsEmpty());
}

TEST(TextKit, contentWords_carryMeaning) {
    EXPECT_THAT(TextKit::contentWords("Go to AI"), IsEmpty());
    EXPECT_THAT(TextKit::contentWords("Q3 2024 budget budget"), ElementsAre("budget", "budget"));
    EXPECT_THAT(TextKit::contentWords("They would’ve liked ße\u0301"), ElementsAre("would've", "liked"));
}

TEST(TextKit, similarity_ofSetsOfWords) {
    struct Case {
        std::string a;
        std::string b;
        double similarity;
    };

    const std::vector<Case> cases{
        {"", "", 1},
        {"the", "the", 1},
        {"the", "of", 0},
        {"", "budget", 0},
        {"budget", "", 0},
        {"the", "budget", 0},
        {"the budget", "the", 0.5}, // one text has nothing but stop words: both keep theirs
        {"the budget", "budget of the", 1},
        {"12 34", "56", 1}, // no letter, no word
        {"AI budget", "ai plan", 1.0 / 3},
        {"budget budget plan", "Budget", 0.5},
        {"it’s", "it's", 1},
    };
    for (const auto& [a, b, similarity] : cases) {
        EXPECT_DOUBLE_EQ(TextKit::similarity(a, b), similarity) << a << " | " << b;
        for (const double bound : {0.0, 0.3, 0.5, 0.6, 1.0}) {
            EXPECT_EQ(WordProfile(a).isMoreSimilar(WordProfile(b), bound), similarity > bound) << a << " | " << b;
        }
    }
}

TEST(TextKit, wordCount_countsPiecesWithALetterOrNumber) {
    const std::vector<std::pair<std::string, std::size_t>> cases{
        {"", 0},      {"a — b", 2},     {" one\ttwo\r\nthree\u2028four\u00A0five ", 5},
        {"½ ① !", 2}, {"🎉 \u0301", 0}, {"日本語", 1},
    };
    for (const auto& [text, count] : cases) {
        EXPECT_EQ(TextKit::wordCount(text), count) << text;
    }
}

TEST(TextKit, wordCount_withoutSpaces_countsTheDictionarysWords) {
    EXPECT_EQ(TextKit::wordCount("今日は会議です。"), 4U);
    EXPECT_EQ(TextKit::wordCount("Wir sehen 東京タワー."), 3U);
}

TEST(TextKit, stripLeadIns_neverEmptiesTheText) {
    const Pairs cases{
        {"So, yeah, okay we ship", "we ship"},
        {"  OK.\tWell! right  go ", "go"},
        {"Okay.", "Okay."},
        {"So, okay.", "okay."},
        {"Sofa prices", "Sofa prices"},
        {"So... fine", ".. fine"},
        {"Like-minded people", "-minded people"},
        {"But’s sake", "’s sake"},
        {"\nSo we ship", "\nSo we ship"},
        {"\u00A0So\n we ship\u00A0", "we ship"},
        {"So\u0301 we ship", "So\u0301 we ship"}, // a combining mark belongs to the word
        {"ſo we ship", "we ship"},
        {"", ""},
        {" ", ""},
    };
    for (const auto& [text, stripped] : cases) {
        EXPECT_EQ(TextKit::stripLeadIns(text), stripped) << text;
    }
}

TEST(TextKit, lowercasedFirst_keepsIAndAcronyms) {
    const Pairs cases{
        {"I think so", "I think so"},
        {"I’ll send it", "I’ll send it"},
        {"I'd say", "I'd say"},
        {"  I am", "  I am"},
        {"It is", "it is"},
        {"QBR deck", "QBR deck"},
        {"MacBook", "MacBook"},
        {"Send it", "send it"},
        {"Send QBR", "send QBR"},
        {"A", "a"},
        {"É\u0301tÉ", "É\u0301tÉ"},
        {"E\u0301té", "e\u0301té"},
        {"İt", "i\u0307t"},
        {" Send", " Send"},
        {"", ""},
        {"  ", "  "},
    };
    for (const auto& [text, lowered] : cases) {
        EXPECT_EQ(TextKit::lowercasedFirst(text), lowered) << text;
    }
}

TEST(TextKit, capitalisedFirst_mayGrow) {
    const Pairs cases{{"", ""},        {"send it", "Send it"}, {"ßa", "SSa"},      {"e\u0301a", "E\u0301a"},
                      {"ﬁne", "FIne"}, {"🎉 a", "🎉 a"},       {"\r\na", "\r\na"}, {"ŉa", "ʼNa"}};
    for (const auto& [text, capitalised] : cases) {
        EXPECT_EQ(TextKit::capitalisedFirst(text), capitalised) << text;
    }
}

// Work that is not linear in the length would not end here.
TEST(TextKit, longTextsWithoutAnEnd_areDone) {
    constexpr std::size_t length = 200'000;
    std::string leadIns;
    while (leadIns.size() < length) {
        leadIns += "so ";
    }
    EXPECT_EQ(TextKit::stripLeadIns(leadIns + "x"), "x");
    const std::string blanks = "so" + std::string(length, ' ') + "x";
    EXPECT_EQ(TextKit::stripLeadIns(blanks), "x");
    for (const std::string& text : {leadIns, blanks, std::string(length, 'a'), std::string(length, '.')}) {
        EXPECT_FALSE(TextKit::sentences(text).empty());
        EXPECT_GE(TextKit::similarity(text, text + " budget"), 0);
        EXPECT_EQ(TextKit::fold(text).size(), text.size());
        EXPECT_LE(TextKit::wordCount(text), length);
        EXPECT_EQ(TextKit::lowercasedFirst(text).size(), text.size());
        EXPECT_EQ(TextKit::capitalisedFirst(text).size(), text.size());
    }
}

} // namespace
} // namespace varnic
