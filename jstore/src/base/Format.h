#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace jstore {

/// The time (UTC) as "2026-11-21T13:20:05.123Z"; "-" for one that is unknown. A year that has no four digits is shown
/// as "@" and the milliseconds since 1970.
[[nodiscard]] std::string timeText(const boost::posix_time::ptime& time);

/// Reads a time: `YYYY-MM-DD`, with `THH:MM`, `:SS` and a fraction behind if wanted (a blank does for the `T`), and `Z`
/// or `+HH:MM` at the end, else the local time is meant; `@SECONDS` since 1970; or `now`. Milliseconds count, what is
/// finer is cut off. Empty for anything else.
[[nodiscard]] std::optional<boost::posix_time::ptime> parseTime(std::string_view text);

/// The number of bytes: as it is, or with `human` such as "1.5K" (units of 1024, one digit behind the point); "-" when
/// it is unknown.
[[nodiscard]] std::string sizeText(const std::optional<std::uint64_t>& bytes, bool human = false);

}  // namespace jstore
