#pragma once

#include <string>

#include "manual/Grammar.h"

namespace jstore::manual {

/// The manual page jstore(1), in the man macros.
[[nodiscard]] std::string manPage(const Grammar& grammar, const std::string& version);

}  // namespace jstore::manual
