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
    EXPECT_EQ("2026-11-21T13:20:05.000Z", roundTrip("2026-11-21T13:20:05Z"));
    EXPECT_EQ("2026-11-21T13:20:05.500Z", roundTrip("2026-11-21 13:20:05.5Z"));
    EXPECT_EQ("2026-11-21T13:20:05.123Z", roundTrip("2026-11-21T13:20:05.123999Z"));
    EXPECT_EQ("2026-11-21T11:20:00.000Z", roundTrip("2026-11-21T13:20+02:00"));
    EXPECT_EQ("2026-11-22T00:50:00.000Z", roundTrip("2026-11-21T13:20-1130"));
    EXPECT_EQ("2024-02-29T00:00:00.000Z", roundTrip("2024-02-29Z"));
    EXPECT_EQ("1969-12-31T23:59:59.250Z", roundTrip("1969-12-31T23:59:59.25Z"));
    EXPECT_EQ("0001-01-01T00:00:00.000Z", roundTrip("0001-01-01Z"));
}

TEST(TimeTest, SecondsSince1970AreRead) {
    EXPECT_EQ("1970-01-01T00:00:00.000Z", roundTrip("@0"));
    EXPECT_EQ("1969-12-31T23:59:59.000Z", roundTrip("@-1"));
    EXPECT_EQ("2001-09-09T01:46:40.000Z", roundTrip("@1000000000"));
}

TEST(TimeTest, TimeWithoutAZoneIsLocal) {
    ::setenv("TZ", "XYZ-03:00", /*overwrite=*/1);
    EXPECT_EQ("2026-11-21T10:20:05.000Z", roundTrip("2026-11-21T13:20:05"));
    EXPECT_EQ("2026-11-20T21:00:00.000Z", roundTrip("2026-11-21"));
    EXPECT_EQ("1969-12-31T23:59:59.000Z", roundTrip("1970-01-01T02:59:59"));
    ::unsetenv("TZ");
}

TEST(TimeTest, NowIsATime) { EXPECT_NE("none", roundTrip("now")); }

TEST(TimeTest, OtherTextIsNone) {
    for (const auto* const text :
         {"", "yesterday", "2026-13-01", "2026-02-30Z", "2026-11-21T24:00Z", "2026-11-21T13:60Z", "2026-11-21T13",
          "2026-11-21T13:20:61Z", "26-11-21", "@", "@x", "2026-11-21T13:20+25:00", "2026-11-21x", " now"}) {
        EXPECT_EQ("none", roundTrip(text)) << text;
    }
}

TEST(TimeTest, TimesWithoutAYearOfFourDigitsAreCounted) {
    EXPECT_EQ("@999999999999000", roundTrip("@999999999999"));
    EXPECT_EQ("-", timeText(boost::posix_time::ptime()));
}

TEST(SizeTest, BytesAreShownAsTheyAre) {
    EXPECT_EQ("0", sizeText(0));
    EXPECT_EQ("18446744073709551615", sizeText(18446744073709551615U));
    EXPECT_EQ("-", sizeText(std::nullopt));
}

TEST(SizeTest, PeopleSeeUnits) {
    EXPECT_EQ("1023", sizeText(1023, true));
    EXPECT_EQ("1.0K", sizeText(1024, true));
    EXPECT_EQ("1.5K", sizeText(1536, true));
    EXPECT_EQ("1.0M", sizeText(1048575, true));
    EXPECT_EQ("16.0E", sizeText(18446744073709551615U, true));
    EXPECT_EQ("-", sizeText(std::nullopt, true));
}

}  // namespace

}  // namespace jstore
