#include "JavaProviderTime.h"

#include <boost/date_time/posix_time/posix_time_io.hpp>

#include <cstdint>
#include <ostream>

namespace storage::javaprovider {

namespace {

const boost::gregorian::date& epochDay() {
    static const boost::gregorian::date day(1970, 1, 1);
    return day;
}

/// Special values have a text of their own. Compared by their count, which no year can be too early or late for.
bool hasText(const boost::posix_time::ptime& time) {
    static const boost::posix_time::ptime first(boost::posix_time::min_date_time);
    static const boost::posix_time::ptime last(boost::posix_time::max_date_time);
    return time.is_special() || (first <= time && time <= last);
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

std::ostream& operator<<(std::ostream& out, const LoggedTime& logged) {
    if (hasText(logged.time)) {
        return out << logged.time;
    }
    return out << ptimeToMillis(logged.time) << " ms since 1970";
}

}  // namespace storage::javaprovider
