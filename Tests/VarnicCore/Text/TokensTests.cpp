#include "VarnicCore/Text/Tokens.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

TEST(Tokens, split_wordsWithTheirPunctuation_giveTheTextAgain) {
    struct Case {
        std::string text;
        /// With "|" before a token that is joined.
        std::vector<std::string> tokens;
    };

    const std::vector<Case> cases{
        {"", {}},
        {" It’s 24/7, (really) — well-known…  ", {"It’s", "24/7,", "(really)", "—", "well-known…"}},
        {"今日は会議です。", {"今日", "|は", "|会議", "|です。"}},
        {"「はい」と Linux で、3月に。", {"「はい」", "|と", "Linux", "で、", "|3", "|月", "|に。"}},
        {"今天我们开会（在北京）。", {"今天", "|我们", "|开会", "|（在", "|北京）。"}},
        {"สวัสดีครับ วันนี้", {"สวัสดี", "|ครับ", "วัน", "|นี้"}},
        {"오늘 회의는 좋습니다.", {"오늘", "회의는", "좋습니다."}},
        {"、。", {"、。"}},
        {"\xE3\x81", {"\xE3\x81"}},
    };
    for (const auto& [text, expected] : cases) {
        std::vector<std::string> tokens;
        std::string joined;
        for (const Token& token : Tokens::split(text)) {
            tokens.push_back((token.isJoined ? "|" : "") + std::string(token.text));
            Tokens::append(joined, token.text, token.isJoined);
        }
        EXPECT_EQ(tokens, expected) << text;
        EXPECT_EQ(Tokens::split(joined), Tokens::split(text)) << text;
    }
}

} // namespace
} // namespace varnic
