#pragma once

#include <string>

#include "manual/Grammar.h"

namespace jstore::manual {

/// A script for bash that completes jstore's command lines: verbs, options, their values, and local files, also after
/// `java://`. Nothing of it runs jstore.
[[nodiscard]] std::string bashCompletion(const Grammar& grammar);

/// The same for zsh, as a function to be found in its fpath under the name _jstore.
[[nodiscard]] std::string zshCompletion(const Grammar& grammar);

}  // namespace jstore::manual
