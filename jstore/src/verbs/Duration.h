#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace jstore {

/// Reads a duration: a whole number and its unit without a blank between, `500ms`, `10s`, `2m` or `1h`. Empty for
/// anything else, and for more than a year.
[[nodiscard]] std::optional<std::chrono::milliseconds> parseDuration(std::string_view text);

}  // namespace jstore
