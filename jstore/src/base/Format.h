#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace jstore {

/// The time (UTC) as "2026-11-21T13:20:05.123Z"; "-" if it is unknown. A year without four digits is shown as "@" and
/// the milliseconds since 1970.
[[nodiscard]] std::string timeText(const boost::posix_time::ptime& time);

/// Reads a time: `now`; `@SECONDS` since 1970; or `YYYY-MM-DD`, optionally followed by `THH:MM` (a space may replace
/// the T), `:SS` and a fraction. `Z` or an offset such as `+HH:MM` may end it; without either it is local time. Cuts
/// off everything finer than milliseconds. Empty for anything else.
[[nodiscard]] std::optional<boost::posix_time::ptime> parseTime(std::string_view text);

/// The number of bytes as it is, or with `human` such as "1.5K" (units of 1024, one decimal); "-" if it is unknown.
[[nodiscard]] std::string sizeText(const std::optional<std::uint64_t>& bytes, bool human = false);

}  // namespace jstore
