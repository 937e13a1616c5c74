#pragma once

#include <jni.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <iosfwd>

namespace storage::javaprovider {

// How Java times (milliseconds since 1970-01-01 00:00:00, no zone) and framework times map, for the whole library.

/// The framework time of a Java time; a negative one lies before 1970. No value stands for
/// "unknown". The overflow of times beyond the framework's range (some 290,000 years) is not checked: the result
/// means nothing and may be a special value.
[[nodiscard]] boost::posix_time::ptime millisToPtime(jlong millis);

/// The Java time of a framework time, cut towards zero to whole milliseconds. A special value becomes its tick count
/// divided by 1000: not-a-date-time becomes 9223372036854775.
[[nodiscard]] jlong ptimeToMillis(const boost::posix_time::ptime& time);

/// A framework time as a log record shows it: as Boost writes it, or, in the years that Boost refuses to write (all but
/// 1400 to 9999), in milliseconds since 1970.
struct LoggedTime {
    const boost::posix_time::ptime& time;
};
std::ostream& operator<<(std::ostream& out, const LoggedTime& logged);

}  // namespace storage::javaprovider
