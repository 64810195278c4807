#include "VarnicCore/Summariser/TitleSuggester.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace varnic {
namespace {

TEST(TitleSuggester, title_ofFixedNouns) {
    struct Case {
        std::string text;
        std::string themName;
        std::string title;
    };

    const NounTagger tagger = fixedNounTagger({"pricing", "budget", "launch", "team", "friday", "q3plan", "plan",
                                               "customer's", "été", "cafés", "apis", "week", "would"});
    const std::vector<Case> cases{
        {"", " ", "Call on Tue 3 Jun"},
        {"", " Grace\t", "Call with Grace"},
        {"Pricing, budget. Pricing and budget and PRICING", "Grace", "Pricing & budget"},
        {"Launch pricing, pricing launch, budget budget", "Grace", "Launch & pricing"},
        {"Budget is budget, launch once", "", "Budget"},
        {"Budget is budget, launch once", "Grace", "Call with Grace"},
        {"team team Friday friday q3plan q3plan customer's customer's week week", "", "Call on Tue 3 Jun"},
        {"été été plan plan", "", "Plan"}, // three characters are too few
        {"cafe\u0301s cafe\u0301s cafés cafés", "", "Cafés"},
        {"sales sales", "", "Call on Tue 3 Jun"},
    };
    for (const auto& [text, themName, title] : cases) {
        const auto halfway = text.find(' ');
        const std::vector<Segment> segments{{Speaker::you, 0, 1, text.substr(0, halfway)},
                                            {Speaker::them, 1, 2, halfway < text.size() ? text.substr(halfway) : ""}};
        EXPECT_EQ(TitleSuggester::title(segments, parseDate("2025-06-03T22:30:00Z"), themName, Region{}, tagger), title)
            << text;
    }
}

TEST(TitleSuggester, title_ofRealTalk) {
    const std::vector<Segment> segments{
        {Speaker::you, 0, 1, "The pricing page needs an update before the launch"},
        {Speaker::them, 1, 2, "Agreed. I'll update the pricing page, and the launch can wait for the pricing."},
    };
    EXPECT_EQ(TitleSuggester::title(segments, Date{}, "Grace", Region{}), "Pricing & page");
}

TEST(TitleSuggester, title_ofOtherLanguages_isByPartyOrSourceAndDate) {
    const std::vector<Segment> segments{
        {Speaker::you, 0, 1, "Das Team plant die Website, und die Website plant das Team."}};

    struct Case {
        std::string themName;
        std::string source;
        std::string title;
    };

    for (const auto& [themName, source, title] :
         {Case{" Grace ", "Zoom", "Call with Grace"}, Case{"", "Zoom", "Zoom call on Tue 3 Jun"},
          Case{" ", "Call", "Call on Tue 3 Jun"}, Case{"", "", "Call on Tue 3 Jun"}}) {
        const DigestContext context{.callDate = parseDate("2025-06-03T12:00:00Z"),
                                    .yourName = {},
                                    .themName = themName,
                                    .source = source,
                                    .language = "de"};
        EXPECT_EQ(TitleSuggester::title(segments, context, Region{}), title);
    }
}

TEST(TitleSuggester, title_namesTheDayInTheUsersRegion) {
    const Date date = parseDate("2025-06-03T22:30:00Z");
    EXPECT_EQ(TitleSuggester::title({}, date, "", Region{"en_US", "Europe/Berlin"}), "Call on Wed 4 Jun");
}

} // namespace
} // namespace varnic
