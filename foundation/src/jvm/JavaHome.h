#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace storage::jvm::detail {

/// What a folder holds as a Java home.
struct JavaHome {
    std::filesystem::path libjvm;   ///< empty when there is none
    std::string statedVersion;      ///< as the home states it, such as "17.0.15"; empty when it does not
    std::vector<unsigned> version;  ///< 17.0.15 as three numbers; empty when the home does not state it
    std::string problem;            ///< why no machine can be started from it; empty for a usable home
};

/// Inspects the folder and the files without which a machine ends the process instead of failing: its libraries and the
/// image of its classes. Takes some twenty system calls; never waits, even if a pipe stands in the place of a file.
/// Throws for nothing that it finds there: an unreadable folder is a problem like any other.
[[nodiscard]] JavaHome inspectJavaHome(const std::filesystem::path& home);

}  // namespace storage::jvm::detail
