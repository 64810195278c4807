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

} // namespace
} // namespace varnic
