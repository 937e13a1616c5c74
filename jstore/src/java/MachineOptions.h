#pragma once

#include <vector>

#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace jstore {

/// Returns how to start exactly this Java for these options: with a small heap and as quickly as possible, unless the
/// user's options or the environment say otherwise. Entries of the class path that are missing are left out. Reads the
/// class archive to its end.
[[nodiscard]] storage::jvm::EmbeddedJVMOptions virtualMachineOptions(const Options& options,
                                                                     const storage::jvm::JavaCandidate& java);

/// The places where Java is looked for, in order; only the given home, if one is given.
[[nodiscard]] std::vector<storage::jvm::JavaCandidate> javaCandidates(const Options& options);

/// The first candidate without a problem; null when there is none.
[[nodiscard]] const storage::jvm::JavaCandidate* usable(const std::vector<storage::jvm::JavaCandidate>& candidates);

}  // namespace jstore
