#include "VarnicCore/Summariser/ActionFinder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
constexpr auto you = Speaker::you;
constexpr auto them = Speaker::them;

/// "owner: text (due)", or "" for none.
std::string told(const std::optional<ActionItem>& item) {
    if (!item) {
        return "";
    }
    const auto owner = item->owner ? std::string(rawValue(*item->owner)) : "nobody";
    return owner + ": " + item->text + (item->due ? " (" + *item->due + ")" : "");
}

ActionItem item(std::string text, std::optional<Speaker> owner = std::nullopt) {
    ActionItem made;
    made.text = std::move(text);
    made.owner = owner;
    return made;
}

std::vector<std::string> found(const std::vector<Segment>& segments) {
    std::vector<std::string> texts;
    for (const auto& action : ActionFinder::find(segments)) {
        texts.push_back(told(action));
    }
    return texts;
}

TEST(ActionFinder, action_ofAClause) {
    struct Case {
        std::string clause;
        Speaker speaker;
        std::string told;
    };

    const std::vector<Case> cases{
        {"I'll send the deck by Friday", you, "you: Send the deck by Friday (Friday)"},
        {"I'll send my deck by Friday", them, "them: Send my deck by Friday (Friday)"},
        {"Could you send me the deck", them, "you: Send them the deck"},
        {"Could you send me the deck", you, "them: Send me the deck"},
        {"Can you send me my notes?", them, "you: Send them their notes"},
        {"Please mail US our plan, mine and MYSELF", them, "you: Mail them their plan, theirs and themselves"},
        {"We need to fix the pricing page", you, "nobody: Fix the pricing page"},
        {"Action item: update the pricing page", them, "nobody: Update the pricing page"},
        {"Next steps - book the venue", you, "nobody: Book the venue"},
        {"Follow-up – book the venue", you, "nobody: Book the venue"},
        {"I will be honest with you", you, ""},
        {"Let me think about that", you, ""},
        {"Let me be clear", you, ""},
        {"I can't make it on Friday", you, ""},
        {"Please hold the line", them, ""},
        {"Yeah, I'll do it", you, ""},
        {"I'll do it today", you, "you: Do it today (today)"},
        {"I'll be there tomorrow", you, ""},
        {"I'll send 5 10", you, ""},
        {"I think we should ship", you, ""},
        {"I’ll also just send the deck, please?!", you, "you: Send the deck"},
        {"Can you please quickly then send it over , please", you, "them: Send it over"},
        {"I'll say please", you, ""},
        {"I'll displease the client please ", you, "you: Displease the client"},
        {"I'll ship the build please.\n", you, "you: Ship the build.\n"}, // a newline is no blank to trim
        {"I'll éTÉ ship", you, "you: ÉTÉ ship"},
        {"", you, ""},
        {"I'll", you, ""},
    };
    for (const auto& [clause, speaker, expected] : cases) {
        EXPECT_EQ(told(ActionFinder::action(clause, speaker, std::nullopt)), expected) << clause;
    }
}

TEST(ActionFinder, action_cutsItsOpeningByCharacters) {
    // Here a character of the opening has another length in lower case, and the line break is one character.
    EXPECT_EQ(told(ActionFinder::action("I'll\r\nsend THE deck", you, std::nullopt)), "you: Send THE deck");
    EXPECT_EQ(told(ActionFinder::action("TODO\u00A0: İstanbul offices", you, std::nullopt)),
              "nobody: İstanbul offices");
    EXPECT_EQ(told(ActionFinder::action("PLEASE\u2003İron the shirts", them, std::nullopt)), "you: İron the shirts");
}

TEST(ActionFinder, action_takesTheDueDateFromTheWholeClause) {
    EXPECT_EQ(told(ActionFinder::action("So, I should send the deck, EOD please", you, 12.5)),
              "you: Send the deck, EOD (end of day)");
    EXPECT_EQ(ActionFinder::action("I should send the deck", you, 12.5)->at, 12.5);
}

TEST(ActionFinder, clauses_areCutBeforeCommitments) {
    EXPECT_THAT(ActionFinder::clauses("I’ll ship it, can you review it by Monday please"),
                ElementsAre("I'll ship it", "can you review it by Monday please"));
    EXPECT_THAT(ActionFinder::clauses("We ship; and then I'LL call — so  let's go, soI'll wait"),
                ElementsAre("We ship; and then I'LL call", "let's go", "I'll wait"));
    EXPECT_THAT(ActionFinder::clauses("Ship it,please, pleased, (I'll), we'll"),
                ElementsAre("Ship it,please, pleased, (I'll)", "we'll"));
    EXPECT_THAT(ActionFinder::clauses(" a\u0001\u0001 \t\u0001b"), ElementsAre("a", "b"));
    EXPECT_THAT(ActionFinder::clauses(""), IsEmpty());
}

TEST(ActionFinder, same_byWordsAndOwner) {
    struct Case {
        ActionItem a;
        ActionItem b;
        bool same;
    };

    const std::vector<Case> cases{
        {item("Send the deck", you), item("Send a deck", them), true},
        {item("Fix pricing page", you), item("Fix pricing page before launch day", you), true},
        {item("Fix pricing page", you), item("Fix pricing page before launch day", them), false},
        {item("Fix pricing page", you), item("Fix pricing page before launch day"), false},
        {item("Fix pricing page"), item("Fix pricing page before launch day"), true},
        {item("Send deck"), item("Send deck slides budget"), false}, // one content word is too few
        {item("a b c d e"), item("a b c"), false},                   // similarity of exactly 0.6
        {item(""), item(""), true},
    };
    for (const auto& [a, b, same] : cases) {
        EXPECT_EQ(ActionFinder::same(a, b), same) << a.text << " | " << b.text;
        EXPECT_EQ(ActionFinder::same(b, a), same) << a.text << " | " << b.text;
    }
}

TEST(ActionFinder, find_mergesWhatIsSaidTwice) {
    const std::vector<Segment> segments{
        {you, 1, 2, "I'll fix the pricing page. Nothing else!"},
        {them, 3, 4, "Could you fix the pricing page before launch day by Friday?"},
        {you, 5, 6, "I'll fix the pricing page tomorrow."},
    };
    const auto actions = ActionFinder::find(segments);
    ASSERT_EQ(actions.size(), 1U);
    EXPECT_EQ(told(actions.front()), "you: Fix the pricing page before launch day by Friday (Friday)");
    EXPECT_EQ(actions.front().at, 1);
}

TEST(ActionFinder, find_capsAtTheEnd) {
    std::vector<Segment> segments;
    segments.reserve(26);
    for (int i = 0; i < 25; ++i) {
        segments.emplace_back(you, i, i + 1, fmt::format("I'll ship alpha{0} beta{0} gamma{0}.", i));
    }
    segments.emplace_back(you, 30, 31, "I'll ship alpha3 beta3 gamma3 tomorrow.");
    const auto actions = found(segments);
    EXPECT_EQ(actions.size(), 20U);
    EXPECT_EQ(actions[3], "you: Ship alpha3 beta3 gamma3 (tomorrow)");
    EXPECT_EQ(actions.back(), "you: Ship alpha19 beta19 gamma19");
}

// Work that is not linear in the length would not end here.
TEST(ActionFinder, find_longTextsWithoutAnEnd_areDone) {
    constexpr std::size_t length = 200'000;
    const std::string blanks(length, ' ');
    std::string also;
    std::string commas;
    while (also.size() < length) {
        also += "also ";
        commas += ", and ";
    }
    for (const std::string& text :
         {"I'll ship" + blanks + "it now", fmt::format("Ship it,{0}or{0}please now", blanks),
          "I'll " + also + "ship it", "I'll ship" + commas + "please", "I'll ship it please" + blanks + "x",
          "in " + std::string(length, '9') + " x", "I'll ship the " + std::string(length, 'x'),
          std::string(length / 2, '\xCC') + "\u0301"}) {
        EXPECT_LE(ActionFinder::find({Segment(you, 0, 1, text)}).size(), 1U);
    }
}

} // namespace
} // namespace varnic
