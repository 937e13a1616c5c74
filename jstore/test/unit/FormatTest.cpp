#include "base/Format.h"

#include <gtest/gtest.h>

namespace jstore {

namespace {

/// The time as text after reading, or "none".
std::string roundTrip(const char* text) {
    const auto time = parseTime(text);
    return time ? timeText(*time) : "none";
}

TEST(TimeTest, TimesWithAZoneAreRead) {
    EXPECT_EQ(roundTrip("2026-11-21T13:20:05Z"), "2026-11-21T13:20:05.000Z");
    EXPECT_EQ(roundTrip("2026-11-21 13:20:05.5Z"), "2026-11-21T13:20:05.500Z");
    EXPECT_EQ(roundTrip("2026-11-21T13:20:05.123999Z"), "2026-11-21T13:20:05.123Z");
    EXPECT_EQ(roundTrip("2026-11-21T13:20+02:00"), "2026-11-21T11:20:00.000Z");
    EXPECT_EQ(roundTrip("2026-11-21T13:20-1130"), "2026-11-22T00:50:00.000Z");
    EXPECT_EQ(roundTrip("2024-02-29Z"), "2024-02-29T00:00:00.000Z");
    EXPECT_EQ(roundTrip("1969-12-31T23:59:59.25Z"), "1969-12-31T23:59:59.250Z");
    EXPECT_EQ(roundTrip("0001-01-01Z"), "0001-01-01T00:00:00.000Z");
}

TEST(TimeTest, SecondsSince1970AreRead) {
    EXPECT_EQ(roundTrip("@0"), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(roundTrip("@-1"), "1969-12-31T23:59:59.000Z");
    EXPECT_EQ(roundTrip("@1000000000"), "2001-09-09T01:46:40.000Z");
}

TEST(TimeTest, TimeWithoutAZoneIsLocal) {
    ::setenv("TZ", "XYZ-03:00", /*overwrite=*/1);
    EXPECT_EQ(roundTrip("2026-11-21T13:20:05"), "2026-11-21T10:20:05.000Z");
    EXPECT_EQ(roundTrip("2026-11-21"), "2026-11-20T21:00:00.000Z");
    EXPECT_EQ(roundTrip("1970-01-01T02:59:59"), "1969-12-31T23:59:59.000Z");
    ::unsetenv("TZ");
}

TEST(TimeTest, NowIsATime) { EXPECT_NE(roundTrip("now"), "none"); }

TEST(TimeTest, OtherTextIsNone) {
    for (const auto* const text :
         {"", "yesterday", "2026-13-01", "2026-02-30Z", "2026-11-21T24:00Z", "2026-11-21T13:60Z", "2026-11-21T13",
          "2026-11-21T13:20:61Z", "26-11-21", "@", "@x", "2026-11-21T13:20+25:00", "2026-11-21x", " now"}) {
        EXPECT_EQ(roundTrip(text), "none") << text;
    }
}

TEST(TimeTest, TimesWithoutAYearOfFourDigitsAreCounted) {
    EXPECT_EQ(roundTrip("@999999999999"), "@999999999999000");
    EXPECT_EQ(timeText(boost::posix_time::ptime()), "-");
}

TEST(SizeTest, BytesAreShownAsTheyAre) {
    EXPECT_EQ(sizeText(0), "0");
    EXPECT_EQ(sizeText(18446744073709551615U), "18446744073709551615");
    EXPECT_EQ(sizeText(std::nullopt), "-");
}

TEST(SizeTest, PeopleSeeUnits) {
    EXPECT_EQ(sizeText(1023, true), "1023");
    EXPECT_EQ(sizeText(1024, true), "1.0K");
    EXPECT_EQ(sizeText(1536, true), "1.5K");
    EXPECT_EQ(sizeText(1048575, true), "1.0M");
    EXPECT_EQ(sizeText(18446744073709551615U, true), "16.0E");
    EXPECT_EQ(sizeText(std::nullopt, true), "-");
}

}  // namespace

}  // namespace jstore
