#include "VarnicCore/Text/Language.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

TEST(Language, tags_areReadInEverySpelling) {
    struct Case {
        std::string tag;
        std::string bare;
        bool isEnglish = false;
        std::string name;
    };

    const std::vector<Case> cases{{"en", "en", true, "English"},
                                  {"en-US", "en", true, "English (United States)"},
                                  {"en_GB", "en", true, "English (United Kingdom)"},
                                  {"de", "de", false, "German"},
                                  {"DE-at", "de", false, "German (Austria)"},
                                  {"zh-Hant", "zh", false, "Chinese (Traditional)"},
                                  {"nb-NO", "no", false, "Norwegian Bokmål (Norway)"},
                                  {"fil-PH", "fil", false, "Filipino (Philippines)"},
                                  {"enm", "enm", false, "Middle English"},
                                  {"", "", true, ""}};
    for (const auto& [tag, bare, isEnglish, name] : cases) {
        EXPECT_EQ(Language::bare(tag), bare) << tag;
        EXPECT_EQ(Language::isEnglish(tag), isEnglish) << tag;
        EXPECT_EQ(tag.empty() ? "" : Language::name(tag, "en-GB"), name) << tag;
    }
    EXPECT_TRUE(Language::isSame("pt-BR", "pt_PT"));
    EXPECT_FALSE(Language::isSame("pt", "es"));
    EXPECT_TRUE(Language::isSame("tl", "fil-PH")) << "an old tag";
    EXPECT_EQ(Language::name("de", "fr"), "allemand");
}

} // namespace
} // namespace varnic
