#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "foundation/Export.h"

namespace foundation::log {

/// Sets which severities the channel lets through (a bit each, see Severity); zero, the start value, switches it off.
///
/// The channel need not have a logger yet. Safe from any thread; threads that log see the change soon, not at once.
FOUNDATION_API void setSeverityMask(const std::string& channel, std::uint32_t mask);

/// The channel's present mask; zero for a channel that nobody has named.
[[nodiscard]] FOUNDATION_API std::uint32_t severityMask(const std::string& channel);

namespace detail {
/// The one mask of a channel name, shared by all its loggers. It lives until the process ends.
[[nodiscard]] FOUNDATION_API std::atomic<std::uint32_t>& maskOf(const std::string& channel);
}  // namespace detail

}  // namespace foundation::log
