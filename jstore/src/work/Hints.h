#pragma once

#include <string>

#include "base/Problem.h"
#include "options/Options.h"

namespace jstore {

/// Adds a hint to a back end's error that has no text yet. Knows about the mounts of the default provider.
void addHint(Problem& problem, const Options& options);

/// What may help with an error; empty if nothing is known.
[[nodiscard]] std::string hintFor(const Problem& problem, const Options& options);

}  // namespace jstore
