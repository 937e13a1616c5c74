#pragma once

#include <string>

#include "manual/Grammar.h"

namespace jstore::manual {

/// A script for bash that completes jstore's command lines: verbs, options, their values, and local files, after
/// `java://` too. The script never runs jstore.
[[nodiscard]] std::string bashCompletion(const Grammar& grammar);

/// The same for zsh, as the function _jstore for a folder of fpath.
[[nodiscard]] std::string zshCompletion(const Grammar& grammar);

}  // namespace jstore::manual
