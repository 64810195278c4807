#include "VarnicCore/Models/Clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

struct Reading {
    double seconds;
    std::string text;
};

TEST(Clock, stamp_secondsBelowAndAboveAnHour) {
    const std::vector<Reading> readings{{-3, "0:00"},      {0, "0:00"},           {59.9, "0:59"},
                                        {125, "2:05"},     {3599.99, "59:59"},    {3600, "1:00:00"},
                                        {3723, "1:02:03"}, {360000, "100:00:00"}, {1e300, "2500000000000000:00:00"}};
    for (const auto& [seconds, text] : readings) {
        EXPECT_EQ(Clock::stamp(seconds), text) << seconds;
    }
}

TEST(Clock, length_roundsToMinutes) {
    const std::vector<Reading> readings{{-5, "under a minute"}, {59.9, "under a minute"},
                                        {60, "1 min"},          {89.9, "1 min"},
                                        {90, "2 min"},          {3569, "59 min"},
                                        {3570, "1 hr"},         {3900, "1 hr 5 min"},
                                        {7200, "2 hr"},         {1e300, "2500000000000000 hr"}};
    for (const auto& [seconds, text] : readings) {
        EXPECT_EQ(Clock::length(seconds), text) << seconds;
    }
}

} // namespace
} // namespace varnic
