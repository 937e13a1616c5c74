#pragma once

#include <string>
#include <vector>

namespace bench {

/// Runs a program with its arguments, found on PATH unless it has a slash, with its standard output thrown away.
/// Returns how long it took from its start to its end, in nanoseconds. Throws std::runtime_error when it cannot be
/// started or does not end with 0.
[[nodiscard]] double timeOf(const std::vector<std::string>& command);

}  // namespace bench
