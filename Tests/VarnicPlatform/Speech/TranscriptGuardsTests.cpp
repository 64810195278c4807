#include "VarnicPlatform/Speech/TranscriptGuards.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

using namespace TranscriptGuards;

struct Repeated {
    std::string text;
    bool repeats;
    std::string collapsed;
};

TEST(TranscriptGuards, repeats_phrasesInARow_areFoundAndCollapsed) {
    const std::vector<Repeated> texts{
        {"", false, ""},
        {"no no no no no", false, "no no no no no"},
        {"Well, no. No, no no NO no, thanks", true, "Well, no, thanks"},
        {"I see. I see. I see.", false, "I see. I see. I see."},
        {"Then I see. I see, I see I see. Good", true, "Then I see. Good"},
        {"one two three one two three one two three one two three one two", true, "one two three one two"},
        {"a a a a a a then b c b c b c b c", true, "a then b c"},
        {"はい。今日は今日は今日は今日は会議です。", true, "はい。今日は会議です。"},
    };
    for (const auto& [text, repeated, collapsed] : texts) {
        EXPECT_EQ(repeats(text), repeated) << text;
        EXPECT_EQ(withoutRepeats(text), collapsed) << text;
    }
}

TEST(TranscriptGuards, compressionRatio_plainAndRepetitiveText_areFarApart) {
    const std::string plain = "In short, the period was so far like the present period that some of its noisiest "
                              "authorities insisted on its being received for good or for evil.";
    EXPECT_NEAR(compressionRatio(plain), 1.4, 0.1);
    std::string loop;
    for (int time = 0; time < 12; ++time) {
        loop += "and then we went there, ";
    }
    EXPECT_GT(compressionRatio(loop), 8);
    EXPECT_EQ(compressionRatio(""), 0);
    const std::string hindi = "मुझे लगता है कि हमें आज बजट के बारे में बात करनी चाहिए क्योंकि लॉन्च में केवल तीन सप्ताह बाकी हैं "
                              "और किसी ने तय नहीं किया है कि कीमत क्या होगी। मैं किसी संख्या पर निर्णय लेने से पहले टीम के "
                              "सभी लोगों से सुनना चाहूंगा, ताकि बाद में कोई शिकायत न करे।";
    EXPECT_NEAR(compressionRatio(hindi), 1.4, 0.2) << "its letters begin alike in UTF-8";
}

TEST(TranscriptGuards, isSuspicious_eachSign_isEnough) {
    EXPECT_FALSE(isSuspicious("We had everything before us, we had nothing before us.", 12, 5));
    EXPECT_TRUE(isSuspicious("We had everything before us.", 68, 5)) << "more tokens than anyone can say";
    EXPECT_TRUE(isSuspicious("no no no no no no", 6, 5));
    std::string dense;
    for (int number = 0; number < 30; ++number) {
        dense += "and " + std::to_string(number) + " of the same again ";
    }
    EXPECT_FALSE(repeats(dense));
    EXPECT_TRUE(isSuspicious(dense, 10, 15));
}

TEST(TranscriptGuards, saidWords_descriptionsOfSounds_areNot) {
    struct Case {
        std::string text;
        std::vector<bool> said;
    };

    for (const auto& [text, said] :
         {Case{"It is only (dramatic music) that. [BLANK_AUDIO]", {true, true, true, false, false, true, false}},
          Case{"♪ la la ♪", {false, true, true, false}},
          Case{"*sighs* Fine *a door closes*", {false, true, false, false, false}},
          Case{"10 to 12 f(x) it's", {true, true, true, true, true}}, Case{"Right. (door", {true, false}},
          Case{"（拍手と笑い）はい、【音楽】", {false, false, false, true, false}}, Case{"", {}}}) {
        EXPECT_EQ(saidWords(text), said) << text;
    }
}

TEST(TranscriptGuards, hasLetter_marksAndNumbersAlone_hasNone) {
    EXPECT_TRUE(hasLetter("¿é?"));
    EXPECT_FALSE(hasLetter(" 10. …"));
}

} // namespace
} // namespace varnic
