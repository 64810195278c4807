#include "VarnicCore/Summariser/EmailDrafter.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

ActionItem item(std::string text, std::optional<Speaker> owner, std::optional<std::string> due = std::nullopt) {
    ActionItem made;
    made.text = std::move(text);
    made.owner = owner;
    made.due = std::move(due);
    return made;
}

TEST(EmailDrafter, phrase_byOwner) {
    struct Case {
        ActionItem action;
        std::string phrase;
    };

    const std::vector<Case> cases{
        {item("Send the deck by Friday", Speaker::you, "Friday"), "I’ll send the deck by Friday."},
        {item("Send the deck", Speaker::you, "end of day"), "I’ll send the deck by end of day."},
        {item(" Review it?!", Speaker::them, "tomorrow"), "Could you review it tomorrow?"},
        {item("Fix the page.", std::nullopt, "next week"), "We’ll fix the page next week."},
        {item("QBR deck out", std::nullopt, "March 3rd"), "We’ll QBR deck out by March 3rd."},
        {item("I’ll wait", Speaker::you), "I’ll I’ll wait."},
        {item("", Speaker::them), "Could you ?"},
    };
    for (const auto& [action, phrase] : cases) {
        EXPECT_EQ(EmailDrafter::phrase(action), phrase);
    }
}

TEST(EmailDrafter, dueText_saysTheDateOnce) {
    struct Case {
        std::string due;
        std::string task;
        std::string text;
    };

    const std::vector<Case> cases{
        {"Friday", "ship on FRIDAY", ""},
        {"Friday", "ship", " by Friday"},
        {"next Monday", "ship", " by next Monday"},
        {"in ٣ days", "ship", " by in ٣ days"},
        {"tonight", "ship", " tonight"},
        {"in two days", "ship", " in two days"},
        {"", "ship", ""},
    };
    for (const auto& [due, task, text] : cases) {
        EXPECT_EQ(EmailDrafter::dueText(due, task), text) << due;
    }
}

TEST(EmailDrafter, draft_ofACall) {
    const DigestContext context{{}, " Ada ", "\tGrace ", "Call"};
    const auto draft = EmailDrafter::draft("Pricing & launch", {"One.", "Two.", "Three.", "Four.", "Five.", "Six."},
                                           {item("Send the deck", Speaker::you)}, context);
    EXPECT_EQ(draft.subject, "Follow-up: Pricing & launch");
    EXPECT_EQ(draft.body, "Hi Grace,\n\n"
                          "Thanks for the time today. A quick recap so we’re on the same page:\n\n"
                          "• One.\n• Two.\n• Three.\n• Four.\n• Five.\n\n"
                          "Next steps\n• I’ll send the deck.\n\n"
                          "Let me know if I missed anything.\n\nBest,\nAda");
}

TEST(EmailDrafter, draft_ofNothing) {
    const auto draft = EmailDrafter::draft("Call on Tue 3 Jun", {}, {}, {{}, " ", "", ""});
    EXPECT_EQ(draft.subject, "Follow-up from our call");
    EXPECT_EQ(draft.body, "Hi all,\n\n"
                          "Thanks for the time today. A quick recap so we’re on the same page:\n\n"
                          "• We caught up on where things stand.\n\n"
                          "Let me know if I missed anything.\n\nBest,");
}

TEST(EmailDrafter, greetAnew_onlyWhoIsGreeted) {
    struct Case {
        std::string body;
        std::string oldName;
        std::string newName;
        std::string greeted;
    };

    const std::vector<Case> cases{
        {"Hi all,\n\nThanks", "", " Maya ", "Hi Maya,\n\nThanks"},
        {"Hi Maya,\n\nThanks", "Maya", "\t", "Hi all,\n\nThanks"},
        {"Hi Maya,\n\nThanks, Maya,\n", "Maya ", "Zoë", "Hi Zoë,\n\nThanks, Maya,\n"},
        {"Hi Maya, hello", "Maya", "Zoë", "Hi Maya, hello"},
        {"Dear Maya,\n", "Maya", "Zoë", "Dear Maya,\n"},
        {"", "", "Zoë", ""},
    };
    for (const auto& [body, oldName, newName, greeted] : cases) {
        EmailDraft email{.subject = "Hi Maya,", .body = body};
        EmailDrafter::greetAnew(email, oldName, newName);
        EXPECT_EQ(email, (EmailDraft{.subject = "Hi Maya,", .body = greeted}));
    }
}

TEST(EmailDrafter, draft_listsEightTasks) {
    const std::vector<ActionItem> actions(9, item("Send the deck", Speaker::you));
    const auto body = EmailDrafter::draft("T", {}, actions, {}).body;
    std::size_t lines = 0;
    for (auto at = body.find("• I’ll"); at != std::string::npos; at = body.find("• I’ll", at + 1)) {
        ++lines;
    }
    EXPECT_EQ(lines, 8U);
}

} // namespace
} // namespace varnic
