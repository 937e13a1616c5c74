#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace storage::jvm::detail {

/// What a folder holds, looked at as a Java home.
struct JavaHome {
    std::filesystem::path libjvm;   ///< empty when there is none
    std::string statedVersion;      ///< as the home states it, such as "17.0.15"; empty when it does not
    std::vector<unsigned> version;  ///< 17.0.15 as three numbers; empty when the home does not state it
    std::string problem;            ///< why no machine can be started from it; empty for a usable home
};

/// Looks at the folder and at the files without which a machine ends the process instead of failing: its libraries and
/// the image of its classes. Some twenty system calls; never waits, whatever stands for a file.
/// Never throws for what it finds there: an unreadable folder is a problem like any other.
[[nodiscard]] JavaHome inspectJavaHome(const std::filesystem::path& home);

}  // namespace storage::jvm::detail
