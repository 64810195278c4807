#include "VarnicCore/Summariser/ExtractiveSummariser.h"

#include "VarnicCore/Summariser/ActionFinder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> keySentences(const std::string& text, const std::vector<ActionItem>& excluding = {},
                                      std::optional<std::size_t> limit = std::nullopt) {
    return ExtractiveSummariser::keySentences({Segment(Speaker::them, 0, 1, text)}, excluding, limit);
}

/// `count` sentences that have no content word in common.
std::string differentSentences(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += fmt::format("They a{0}x and b{0}x then c{0}x with d{0}x. ", i);
    }
    return text;
}

TEST(ExtractiveSummariser, tidy_makesOneSentence) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"So, yeah, the budget is 40 thousand", "The budget is 40 thousand."},
        {"ship it!", "Ship it!"},
        {"ship\r\n\t it ?", "Ship it ?"},
        {"ship it ", "Ship it."},
        {"\nship it", " ship it."},
        {"ßa…", "SSa…."},
        {"Okay", "Okay."},
        {"", ""},
        {" ", ""},
    };
    for (const auto& [text, tidied] : cases) {
        EXPECT_EQ(ExtractiveSummariser::tidy(text), tidied) << text;
    }
}

TEST(ExtractiveSummariser, keySentences_needFiveWordsAndMeaning) {
    EXPECT_THAT(keySentences("Budget decision 40 %!"), IsEmpty());
    EXPECT_THAT(keySentences("The budget decision costs 40!"), ElementsAre("The budget decision costs 40!"));
    EXPECT_THAT(keySentences("It is just what we do."), IsEmpty());
    EXPECT_THAT(keySentences(""), IsEmpty());
}

TEST(ExtractiveSummariser, keySentences_leaveShortGreetingsOut) {
    EXPECT_THAT(keySentences("Sorry, the budget review took us all afternoon."), IsEmpty());
    EXPECT_THAT(keySentences("Sounds good, let's catch up about the budget and the deadline for launch next quarter "
                             "please."),
                SizeIs(1));
    EXPECT_THAT(keySentences("HOW’S it going with the budget review?"), IsEmpty());
}

TEST(ExtractiveSummariser, keySentences_limitGrowsWithTheCall) {
    const std::vector<std::pair<int, std::size_t>> limits{{1, 1},  {2, 2},  {4, 4},  {9, 4},
                                                          {13, 5}, {15, 5}, {19, 7}, {60, 7}};
    for (const auto& [sentences, limit] : limits) {
        EXPECT_THAT(keySentences(differentSentences(sentences)), SizeIs(limit)) << sentences;
    }
    EXPECT_THAT(keySentences(differentSentences(20), {}, 2), SizeIs(2));
    EXPECT_THAT(keySentences(differentSentences(20), {}, 0), IsEmpty());
}

TEST(ExtractiveSummariser, keySentences_bestOnesInSpokenOrder) {
    const std::string text = "They walked home along narrow streets yesterday. "
                             "It rained there and nobody minded that. "
                             "We decided the budget is 40 thousand dollars. "
                             "Is the deadline a problem for everyone there? "
                             "Pricing stays because the launch budget allows it.";
    EXPECT_THAT(keySentences(text, {}, 2), ElementsAre("We decided the budget is 40 thousand dollars.",
                                                       "Pricing stays because the launch budget allows it."));
}

TEST(ExtractiveSummariser, keySentences_equalScores_keepSpokenOrder) {
    EXPECT_THAT(keySentences(differentSentences(3), {}, 2),
                ElementsAre("They a0x and b0x then c0x with d0x.", "They a1x and b1x then c1x with d1x."));
}

TEST(ExtractiveSummariser, keySentences_scoresEqualButForRounding_areAddedUpInOrder) {
    // Without rounding, 1/5 + 0.05 + 0.45 + 0.2 and 3/4 + 0.15.
    const std::string first = "The budget is 7, and it is what it was and will be for all of us, as it is what we have "
                              "and had.";
    const std::string second = "The gardener will be with us in the orchard, for he was up on the ladder.";
    EXPECT_THAT(keySentences(first + " " + second, {}, 1), ElementsAre(second));
}

TEST(ExtractiveSummariser, keySentences_ofEnglish_knowOneQuestionMark) {
    EXPECT_THAT(keySentences("The gardener climbed that ladder？ The farmer walked into orchards.", {}, 1),
                ElementsAre("The gardener climbed that ladder？."));
}

TEST(ExtractiveSummariser, keySentences_sayNothingTwice) {
    const std::string one = "The customer wants the contract, the invoice and the roadmap printed.";
    const std::string two = "The customer wants the contract, the invoice and the roadmap printed tomorrow!";
    EXPECT_THAT(keySentences(one + " " + two), ElementsAre(one));
    ActionItem action;
    action.text = "customer wants contract invoice roadmap printed";
    EXPECT_THAT(keySentences(one, {action}), IsEmpty());
    action.text = "customer wants";
    EXPECT_THAT(keySentences(one, {action}), ElementsAre(one));
}

TEST(ExtractiveSummariser, keySentences_shortTodosAreNoSummary) {
    EXPECT_THAT(keySentences("Well, I'll update the budget page tomorrow."), IsEmpty());
    EXPECT_THAT(keySentences("The budget is fine, so can you update the pricing page?"), IsEmpty());
    EXPECT_THAT(keySentences("I'll update the budget page tomorrow because the customer asked about the price of the "
                             "contract."),
                SizeIs(1));
}

std::vector<Segment> planningCall() {
    return {
        {Speaker::them, 0, 4, "Good morning, thanks for joining. Can you send me the revised designs by Friday?"},
        {Speaker::you, 4, 8,
         "Sure, I'll send the revised designs by Friday. We decided to launch the designs in March."},
        {Speaker::them, 8, 12, "So, the launch budget is 40 thousand dollars because the pricing changed last month."},
        {Speaker::you, 12, 16, "We need to finalise the launch date next week. Talk soon, bye!"},
    };
}

TEST(ExtractiveSummariser, makeDigest_ofACall) {
    const Date now = parseDate("2026-03-14T09:26:53.589Z");
    const DigestContext context{now, "Ada", "Grace", "Call"};
    const auto digest = ExtractiveSummariser::makeDigest(planningCall(), context, Region{}, now);
    EXPECT_EQ(digest.title, "Designs & launch");
    EXPECT_THAT(digest.summary, ElementsAre("We decided to launch the designs in March.",
                                            "The launch budget is 40 thousand dollars because the pricing changed last "
                                            "month."));
    ASSERT_THAT(digest.actions, SizeIs(2));
    EXPECT_EQ(digest.actions[0].text, "Send them the revised designs by Friday");
    EXPECT_EQ(digest.actions[0].owner, Speaker::you);
    EXPECT_EQ(digest.actions[1].text, "Finalise the launch date next week");
    EXPECT_EQ(digest.actions[1].due, "next week");
    EXPECT_EQ(digest.email.subject, "Follow-up: Designs & launch");
    EXPECT_THAT(digest.email.body, testing::HasSubstr("• We’ll finalise the launch date next week.\n\nLet me know"));
    EXPECT_EQ(digest.provider, "Varnic, on this Mac");
    EXPECT_TRUE(digest.isLocal);
    EXPECT_EQ(digest.createdAt, now);
}

TEST(ExtractiveSummariser, makeDigest_ofOtherLanguages_inventsNothing) {
    struct Case {
        std::string language;
        std::vector<std::string> said;
        std::vector<std::string> summary;
    };

    const std::vector<Case> cases{
        {"de",
         {"Ja, hallo.", "Also, das Budget für die neue Website liegt bei 40 Prozent",
          "I’ll send the deck by Friday. Die neue Website soll im März fertig sein.", "Gut, bis dann!"},
         {"Also, das Budget für die neue Website liegt bei 40 Prozent.", "I’ll send the deck by Friday.",
          "Die neue Website soll im März fertig sein."}},
        {"fr",
         {"Oui.", "la sortie du produit coûte 500 € par mois ?"},
         {"La sortie du produit coûte 500 € par mois ?"}},
        {"tr",
         {"ilk toplantı pazartesi günü saat dokuzda yapılacak"},
         {"İlk toplantı pazartesi günü saat dokuzda yapılacak."}},
        {"ja",
         {"はい。", "予算は来年の三月までに決める必要があります。予算の会議は来週の月曜日です"},
         {"予算は来年の三月までに決める必要があります。", "予算の会議は来週の月曜日です。"}},
        {"zh", {"嗯。", "我们决定明年三月发布这个新产品"}, {"我们决定明年三月发布这个新产品。"}},
        {"th", {"เราควรพูดคุยเกี่ยวกับงบประมาณในวันนี้"}, {"เราควรพูดคุยเกี่ยวกับงบประมาณในวันนี้"}},
    };
    for (const auto& [language, said, summary] : cases) {
        std::vector<Segment> segments;
        for (const std::string& text : said) {
            segments.emplace_back(Speaker::you, 0, 1, text);
        }
        const DigestContext context{{}, "Ada", "Grace", "Zoom", language};
        const auto digest = ExtractiveSummariser::makeDigest(segments, context, Region{}, {});
        EXPECT_EQ(digest.summary, summary) << language;
        EXPECT_THAT(digest.actions, IsEmpty()) << language;
        EXPECT_EQ(digest.email, EmailDraft()) << language;
        EXPECT_EQ(digest.title, "Call with Grace") << language;
    }
}

TEST(ExtractiveSummariser, keySentences_ofOtherLanguages_areTheCentralOnesOfALongCall) {
    std::vector<Segment> segments;
    for (int i = 0; i < 30; ++i) {
        segments.emplace_back(Speaker::you, i, i + 1, fmt::format("So etwas wie x{0}x oder auch y{0}y.", i));
    }
    segments[3].text = "Der Vertrag mit dem Verlag läuft nur noch bis zum Sommer.";
    segments[20].text = "Ohne diesen Vertrag kann der Verlag im Sommer nichts drucken.";
    segments[25].text = "Und der Vertrag mit dem Verlag läuft nur noch bis zum Sommer.";
    EXPECT_THAT(ExtractiveSummariser::keySentences(segments, {}, 2, "de"),
                ElementsAre(segments[3].text, segments[20].text))
        << "what is said twice counts once";
}

TEST(ExtractiveSummariser, digest_ofNothing_isWhole) {
    const std::unique_ptr<const Summariser> summariser = std::make_unique<ExtractiveSummariser>();
    const auto digest = summariser->digest({}, {{}, "", "Grace", ""}, {});
    EXPECT_EQ(summariser->displayName(), "Varnic, on this Mac");
    EXPECT_TRUE(summariser->isLocal());
    EXPECT_EQ(digest.provider, "Varnic, on this Mac");
    EXPECT_TRUE(digest.isLocal);
    EXPECT_THAT(digest.summary, IsEmpty());
    EXPECT_THAT(digest.actions, IsEmpty());
    EXPECT_EQ(digest.title, "Call with Grace");
}

} // namespace
} // namespace varnic
