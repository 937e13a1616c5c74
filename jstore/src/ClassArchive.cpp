#include "ClassArchive.h"

#include <fstream>
#include <string_view>

namespace jstore {

namespace fs = std::filesystem;

std::string versionOf(const fs::path& javaHome) {
    constexpr std::string_view key = "JAVA_VERSION=\"";
    std::ifstream release(javaHome / "release");
    for (std::string line; std::getline(release, line);) {
        if (line.starts_with(key)) {
            return line.substr(key.size(), line.find('"', key.size()) - key.size());
        }
    }
    return {};
}

fs::path classArchiveOf(const Options& options, const storage::jvm::JavaCandidate& java) {
    const auto version = versionOf(java.home);
    return version.empty() ? fs::path() : options.archives / ("classes-" + version + ".jsa");
}

bool takesClassArchive(const Options& options) {
    return options.classPath.empty() && options.environmentClassPath.empty();
}

bool isMapped(const fs::path& file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(" " + file.string())) {
            return true;
        }
    }
    return false;
}

}  // namespace jstore
