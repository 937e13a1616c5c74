#include "JavaProviderTime.h"

#include <cstdint>

namespace storage::javaprovider {

namespace {

const boost::gregorian::date& epochDay() {
    static const boost::gregorian::date day(1970, 1, 1);
    return day;
}

}  // namespace

boost::posix_time::ptime millisToPtime(jlong millis) {
    // Unsigned, so that the product wraps. A time some 290,000 years off has no framework time: Boost's sum of day and
    // ticks is not checked.
    const auto ticks = static_cast<std::int64_t>(static_cast<std::uint64_t>(millis) * 1000U);
    return {epochDay(), boost::posix_time::time_duration(0, 0, 0, ticks)};
}

jlong ptimeToMillis(const boost::posix_time::ptime& time) {
    static const boost::posix_time::ptime epoch(epochDay(), boost::posix_time::time_duration(0, 0, 0));
    return static_cast<jlong>((time - epoch).total_milliseconds());
}

}  // namespace storage::javaprovider
