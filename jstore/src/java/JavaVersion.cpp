#include "java/JavaVersion.h"

#include <charconv>

namespace jstore {

int majorOf(const std::string& version) {
    int major = 0;
    std::from_chars(version.data(), version.data() + version.size(), major);
    return major;
}

}  // namespace jstore
