#include "verbs/Duration.h"

#include <gtest/gtest.h>

namespace jstore {

using std::chrono::milliseconds;

TEST(DurationTest, NumberHasAUnit) {
    EXPECT_EQ(parseDuration("0s"), milliseconds(0));
    EXPECT_EQ(parseDuration("500ms"), milliseconds(500));
    EXPECT_EQ(parseDuration("10s"), milliseconds(10'000));
    EXPECT_EQ(parseDuration("2m"), milliseconds(120'000));
    EXPECT_EQ(parseDuration("1h"), milliseconds(3'600'000));
}

TEST(DurationTest, AnythingElseIsNone) {
    for (const auto* const text :
         {"", "s", "10", "10 s", " 10s", "10s ", "10S", "1.5s", "-1s", "+1s", "1d", "0x1s", "ten seconds"}) {
        EXPECT_EQ(parseDuration(text), std::nullopt) << text;
    }
}

TEST(DurationTest, MoreThanAYearIsNone) {
    EXPECT_TRUE(parseDuration("8765h"));
    EXPECT_EQ(parseDuration("9000h"), std::nullopt);
    EXPECT_EQ(parseDuration("99999999999999999999ms"), std::nullopt);
    EXPECT_EQ(parseDuration("18446744073709551615h"), std::nullopt);
}

}  // namespace jstore
