#include "VarnicCore/Pipeline/Consent.h"

#include <gtest/gtest.h>

#include <string>

namespace varnic {
namespace {

using Consent::Tone;

TEST(Consent, headsUp_onlyTheFormalOneCarriesAName) {
    EXPECT_TRUE(Consent::headsUp(Tone::formal, " \t").ends_with("Please let me know if you do not consent."));
    EXPECT_TRUE(Consent::headsUp(Tone::formal, " Sam\t").ends_with("if you do not consent — Sam."));
    for (const Tone tone : {Tone::friendly, Tone::brief}) {
        EXPECT_EQ(Consent::headsUp(tone, "Sam"), Consent::headsUp(tone, ""));
        EXPECT_EQ(Consent::headsUp(tone, "Sam").find("Sam"), std::string::npos);
    }
}

TEST(Consent, tones_areStoredByRawValueAndListedByTitle) {
    std::string listed;
    for (const Tone tone : Consent::allTones) {
        EXPECT_EQ(Consent::toneFrom(Consent::rawValue(tone)), tone);
        listed.append(Consent::title(tone)).append(" ");
    }
    EXPECT_EQ(listed, "Friendly Formal Brief ");
    EXPECT_EQ(Consent::toneFrom("Formal"), std::nullopt);
}

} // namespace
} // namespace varnic
