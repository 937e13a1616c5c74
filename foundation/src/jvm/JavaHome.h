#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace storage::jvm::detail {

/// What a folder holds, looked at as a Java home.
struct JavaHome {
    std::filesystem::path libjvm;   ///< empty when there is none
    std::vector<unsigned> version;  ///< 17.0.15 as three numbers; empty when the home does not state it
    std::string problem;            ///< why no machine can be started from it; empty for a usable home
};

/// Looks at the folder. Never throws for what it finds there: an unreadable folder is a problem like any other.
[[nodiscard]] JavaHome inspectJavaHome(const std::filesystem::path& home);

}  // namespace storage::jvm::detail
