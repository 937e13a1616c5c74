#include "verbs/Duration.h"

#include <gtest/gtest.h>

namespace jstore {

using std::chrono::milliseconds;

TEST(DurationTest, NumberHasAUnit) {
    EXPECT_EQ(milliseconds(0), parseDuration("0s"));
    EXPECT_EQ(milliseconds(500), parseDuration("500ms"));
    EXPECT_EQ(milliseconds(10'000), parseDuration("10s"));
    EXPECT_EQ(milliseconds(120'000), parseDuration("2m"));
    EXPECT_EQ(milliseconds(3'600'000), parseDuration("1h"));
}

TEST(DurationTest, AnythingElseIsNone) {
    for (const auto* const text :
         {"", "s", "10", "10 s", " 10s", "10s ", "10S", "1.5s", "-1s", "+1s", "1d", "0x1s", "ten seconds"}) {
        EXPECT_EQ(std::nullopt, parseDuration(text)) << text;
    }
}

TEST(DurationTest, MoreThanAYearIsNone) {
    EXPECT_TRUE(parseDuration("8765h"));
    EXPECT_EQ(std::nullopt, parseDuration("9000h"));
    EXPECT_EQ(std::nullopt, parseDuration("99999999999999999999ms"));
    EXPECT_EQ(std::nullopt, parseDuration("18446744073709551615h"));
}

}  // namespace jstore
