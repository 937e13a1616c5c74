// How Java times and the framework's times map.
#include <gtest/gtest.h>

#include <boost/date_time/posix_time/posix_time.hpp>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

#include "JavaProviderTime.h"

namespace storage::javaprovider::test {
namespace {

using boost::gregorian::date;
using boost::posix_time::microseconds;
using boost::posix_time::ptime;
using boost::posix_time::to_simple_string;

constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();

ptime epoch() { return ptime(date(1970, 1, 1)); }

/// A Java time and what the framework calls it.
struct KnownTime {
    const char* name;
    std::int64_t millis;
    const char* text;

    friend void PrintTo(const KnownTime& time, std::ostream* out) { *out << time.millis; }
};

class KnownTimeTest : public ::testing::TestWithParam<KnownTime> {};

TEST_P(KnownTimeTest, MapsBothWays) {
    const ptime time = millisToPtime(GetParam().millis);
    EXPECT_EQ(to_simple_string(time), GetParam().text);
    EXPECT_EQ(ptimeToMillis(time), GetParam().millis);
}

INSTANTIATE_TEST_SUITE_P(Times, KnownTimeTest,
                         ::testing::Values(KnownTime{"Epoch", 0, "1970-Jan-01 00:00:00"},
                                           KnownTime{"JustBeforeTheEpoch", -1, "1969-Dec-31 23:59:59.999000"},
                                           KnownTime{"OneMillisecond", 1, "1970-Jan-01 00:00:00.001000"},
                                           KnownTime{"Recent", 1700000000123, "2023-Nov-14 22:13:20.123000"},
                                           KnownTime{"WholeDays", 2 * 86400000LL, "1970-Jan-03 00:00:00"},
                                           KnownTime{"WholeDaysBefore", -86400000LL, "1969-Dec-31 00:00:00"},
                                           KnownTime{"LeapDay", 951782400000, "2000-Feb-29 00:00:00"},
                                           KnownTime{"BeyondThirtyTwoBits", 4294967296000, "2106-Feb-07 06:28:16"},
                                           KnownTime{"OldestDate", -17987443200000, "1400-Jan-01 00:00:00"},
                                           KnownTime{"LastMillisecondOfTheCalendar", 253402300799999,
                                                     "9999-Dec-31 23:59:59.999000"}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(MillisToPtimeTest, KeepsWholeMicrosecondTicks) {
    EXPECT_EQ((millisToPtime(1700000000123) - epoch()).ticks(), 1700000000123000);
    EXPECT_EQ((millisToPtime(-1700000000123) - epoch()).ticks(), -1700000000123000);
}

TEST(MillisToPtimeTest, ProductBeyondTheRangeWrapsAround) {
    EXPECT_EQ((millisToPtime(Largest) - epoch()).ticks(), -1000);
    EXPECT_EQ((millisToPtime(Smallest) - epoch()).ticks(), 0);
    EXPECT_EQ((millisToPtime(Smallest + 1) - epoch()).ticks(), 1000);
}

TEST(MillisToPtimeTest, ZeroMinusOneAndTheExtremesAreTimesLikeOthers) {
    for (const std::int64_t millis : {std::int64_t{0}, std::int64_t{-1}, Largest, Smallest}) {
        EXPECT_FALSE(millisToPtime(millis).is_special()) << millis;
    }
}

TEST(PtimeToMillisTest, PartsOfAMillisecondAreDropped) {
    EXPECT_EQ(ptimeToMillis(epoch() + microseconds(999)), 0);
    EXPECT_EQ(ptimeToMillis(epoch() + microseconds(1000)), 1);
    EXPECT_EQ(ptimeToMillis(epoch() + microseconds(1999)), 1);
}

TEST(PtimeToMillisTest, CutsTowardsZeroBeforeTheEpoch) {
    EXPECT_EQ(ptimeToMillis(epoch() - microseconds(500)), 0);
    EXPECT_EQ(ptimeToMillis(epoch() - microseconds(999)), 0);
    EXPECT_EQ(ptimeToMillis(epoch() - microseconds(1000)), -1);
    EXPECT_EQ(ptimeToMillis(epoch() - microseconds(1500)), -1);
    EXPECT_EQ(ptimeToMillis(epoch() - microseconds(2000)), -2);
}

TEST(PtimeToMillisTest, NoTimeAtAllIsItsTickCountDivided) {
    EXPECT_EQ(ptimeToMillis(ptime(boost::posix_time::not_a_date_time)), 9223372036854775);
    EXPECT_EQ(ptimeToMillis(ptime()), 9223372036854775) << "a default-made time is none";
}

TEST(PtimeToMillisTest, InfinitiesAreTheirTickCountDivided) {
    EXPECT_EQ(ptimeToMillis(ptime(boost::posix_time::pos_infin)), Largest / 1000);
    EXPECT_EQ(ptimeToMillis(ptime(boost::posix_time::neg_infin)), Smallest / 1000);
}

TEST(PtimeToMillisTest, EndsOfTheCalendarFit) {
    EXPECT_EQ(ptimeToMillis(ptime(boost::posix_time::min_date_time)), -17987443200000);
    EXPECT_EQ(ptimeToMillis(ptime(boost::posix_time::max_date_time)), 253402300799999);
}

TEST(TimeConversionTest, EveryMillisecondOfADayComesBack) {
    for (std::int64_t millis = -86400000; millis <= 86400000; millis += 997) {
        ASSERT_EQ(ptimeToMillis(millisToPtime(millis)), millis);
    }
}

}  // namespace
}  // namespace storage::javaprovider::test
