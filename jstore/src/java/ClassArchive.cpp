#include "java/ClassArchive.h"

#include <fstream>
#include <string>
#include <system_error>

namespace jstore {

namespace fs = std::filesystem;

fs::path classArchiveOf(const Options& options, const storage::jvm::JavaCandidate& java) {
    return java.version.empty() ? fs::path() : options.archives / ("classes-" + java.version + ".jsa");
}

bool takesClassArchive(const Options& options) {
    return options.classPath.empty() && options.environmentClassPath.empty();
}

bool isMapped(const fs::path& file) {
    std::error_code ignored;  // What is not there is not mapped.
    const std::string suffix = " " + fs::weakly_canonical(file, ignored).string();
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(suffix)) {
            return true;
        }
    }
    return false;
}

}  // namespace jstore
