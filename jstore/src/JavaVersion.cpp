#include "JavaVersion.h"

#include <charconv>
#include <fstream>
#include <string_view>

namespace jstore {

std::string versionOf(const std::filesystem::path& javaHome) {
    constexpr std::string_view key = "JAVA_VERSION=\"";
    std::ifstream release(javaHome / "release");
    for (std::string line; std::getline(release, line);) {
        if (line.starts_with(key)) {
            return line.substr(key.size(), line.find('"', key.size()) - key.size());
        }
    }
    return {};
}

int majorOf(const std::string& version) {
    int major = 0;
    std::from_chars(version.data(), version.data() + version.size(), major);
    return major;
}

}  // namespace jstore
