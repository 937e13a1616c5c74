#pragma once

#include <string>
#include <vector>

namespace jstore::doctor {

enum class Mark { Ok, Warning, Failure };

/// One finding of `jstore doctor`.
struct Check {
    Mark mark;
    std::string subject;  ///< what was checked: "java home", "class path", "mount a", …
    std::string detail;   ///< what was found
    std::string hint;     ///< what to do about it; empty when nothing is wrong
};

using Checks = std::vector<Check>;

}  // namespace jstore::doctor
