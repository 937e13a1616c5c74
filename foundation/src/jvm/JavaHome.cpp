#include "jvm/JavaHome.h"

#include <array>
#include <fstream>
#include <sstream>

namespace storage::jvm::detail {

namespace fs = std::filesystem;

namespace {

constexpr unsigned OldestJava = 11;

fs::path findLibjvm(const fs::path& home) {
    static constexpr std::array variants{"server", "client", "minimal", "zero"};
    for (const char* variant : variants) {
        const fs::path libjvm = home / "lib" / variant / "libjvm.so";
        std::error_code error;
        if (fs::is_regular_file(libjvm, error)) {
            return libjvm;
        }
    }
    return {};
}

/// "17.0.15" or "25-ea" as numbers; stops at the first thing that is none.
std::vector<unsigned> parseVersion(const std::string& text) {
    std::vector<unsigned> numbers;
    std::istringstream input(text);
    unsigned number = 0;
    while (input >> number) {
        numbers.push_back(number);
        if (input.get() != '.') {
            break;
        }
    }
    return numbers;
}

/// Every Java home states its version in a file "release", as JAVA_VERSION="17.0.15".
std::vector<unsigned> readVersion(const fs::path& home) {
    static const std::string key = "JAVA_VERSION=\"";
    std::ifstream release(home / "release");
    for (std::string line; std::getline(release, line);) {
        if (line.starts_with(key)) {
            return parseVersion(line.substr(key.size()));
        }
    }
    return {};
}

std::string findProblem(const fs::path& home, const JavaHome& found) {
    std::error_code error;
    if (!fs::is_directory(home, error)) {
        return "no such folder";
    }
    if (!found.version.empty() && found.version.front() < OldestJava) {
        return "too old: Java 11 or newer is needed";
    }
    return found.libjvm.empty() ? "no lib/server/libjvm.so in it" : "";
}

}  // namespace

JavaHome inspectJavaHome(const fs::path& home) {
    JavaHome found{findLibjvm(home), readVersion(home), {}};
    found.problem = findProblem(home, found);
    return found;
}

}  // namespace storage::jvm::detail
