#pragma once

#include <string>

namespace jstore {

/// 17 of "17.0.1"; 1 of "1.8.0", which is old enough; 0 for what is no version.
[[nodiscard]] int majorOf(const std::string& version);

}  // namespace jstore
