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
    // Unsigned, so that a time beyond the framework's range wraps instead of being undefined.
    const auto ticks = static_cast<std::int64_t>(static_cast<std::uint64_t>(millis) * 1000U);
    return {epochDay(), boost::posix_time::time_duration(0, 0, 0, ticks)};
}

jlong ptimeToMillis(const boost::posix_time::ptime& time) {
    static const boost::posix_time::ptime epoch(epochDay(), boost::posix_time::time_duration(0, 0, 0));
    return static_cast<jlong>((time - epoch).total_milliseconds());
}

}  // namespace storage::javaprovider
