#pragma once

#include <string>
#include <vector>

#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace jstore {

/// How the virtual machine of this Java is started for these options: with a small heap and the quickest start, where
/// the user's own options and the environment's leave that open. Entries of the class path that are not there are left
/// out. Reads the class archive to its end.
[[nodiscard]] storage::jvm::EmbeddedJVMOptions virtualMachineOptions(const Options& options,
                                                                     const storage::jvm::JavaCandidate& java);

/// The places where Java is looked for, in order: only the given home when there is one.
[[nodiscard]] std::vector<storage::jvm::JavaCandidate> javaCandidates(const Options& options);

/// The candidate that will be used; null when none can be.
[[nodiscard]] const storage::jvm::JavaCandidate* usable(const std::vector<storage::jvm::JavaCandidate>& candidates);

/// The candidate in one line: where it is from, its home, and what is wrong with it.
[[nodiscard]] std::string describe(const storage::jvm::JavaCandidate& candidate);

}  // namespace jstore
