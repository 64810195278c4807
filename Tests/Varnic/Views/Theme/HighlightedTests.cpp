#include "Varnic/Views/Theme/Native/Highlighted.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

struct Case {
    const char* name;
    const char* text;
    std::vector<Highlight> ranges;
    const char* html;
};

class Highlighted : public testing::TestWithParam<Case> {};

TEST_P(Highlighted, MarksCharacters) {
    EXPECT_EQ(highlighted(GetParam().text, GetParam().ranges).toStdString(), GetParam().html);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Highlighted,
    testing::Values(Case{"nothing", "plain", {}, "plain"},
                    Case{"two", "one two one", {{0, 3}, {8, 11}}, "<mark>one</mark> two <mark>one</mark>"},
                    Case{"escaped", "a<b & \"c\"", {{1, 3}}, "a<mark>&lt;b</mark> &amp; &quot;c&quot;"},
                    // A family of three, an e with an accent of its own, a flag: one character each.
                    Case{"clusters",
                         "👨‍👩‍👧e\u0301🇩🇪x",
                         {{1, 3}},
                         "👨‍👩‍👧<mark>e\u0301🇩🇪</mark>x"},
                    Case{"beyondTheEnd", "ab", {{1, 9}}, "a<mark>b</mark>"},
                    Case{"backwards", "abc", {{2, 1}}, "ab<mark></mark>c"}),
    [](const auto& each) { return each.param.name; });

TEST(Highlighter, PutsTheColourBehindMarks) {
    EXPECT_EQ(Highlighter::richText("a<mark>b</mark>", QColor(0xf4, 0xd3, 0x5e, 0x73)).toStdString(),
              "a<span style=\"background-color:#73f4d35e\">b</span>");
}

} // namespace
} // namespace varnic
