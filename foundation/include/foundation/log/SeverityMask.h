#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "foundation/Export.h"

namespace foundation::log {

/// Sets the severities that a channel records, one bit each (see Severity). Zero, the initial value, disables the
/// channel.
///
/// The channel need not have a logger yet. Safe to call from any thread; other threads see the change soon, but not
/// immediately.
FOUNDATION_API void setSeverityMask(const std::string& channel, std::uint32_t mask);

/// Returns the channel's current mask; zero for an unknown channel.
[[nodiscard]] FOUNDATION_API std::uint32_t severityMask(const std::string& channel);

namespace detail {
/// Returns the one mask of a channel name, shared by all its loggers. It lives until the process ends.
[[nodiscard]] FOUNDATION_API std::atomic<std::uint32_t>& maskOf(const std::string& channel);
}  // namespace detail

}  // namespace foundation::log
