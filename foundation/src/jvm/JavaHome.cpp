#include "jvm/JavaHome.h"

#include <array>
#include <sstream>
#include <string_view>

#include "jvm/HomeFiles.h"
#include "jvm/RegularFile.h"
#include "storage/jvm/JavaCandidate.h"

namespace storage::jvm::detail {

namespace fs = std::filesystem;

namespace {

fs::path findLibjvm(const fs::path& home) {
    static constexpr std::array variants{"server", "client", "minimal", "zero"};
    for (const char* variant : variants) {
        fs::path libjvm = home / "lib" / variant / "libjvm.so";
        std::error_code error;
        if (fs::is_regular_file(libjvm, error)) {
            return libjvm;
        }
    }
    return {};
}

/// "17.0.15" or "25-ea" as numbers, up to the first part that is no number.
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
std::string readVersion(const fs::path& home) {
    constexpr std::string_view key = "JAVA_VERSION=\"";
    constexpr std::size_t longestFile = std::size_t{64} * 1024;
    std::istringstream release(RegularFile(home / "release").read(0, longestFile));
    for (std::string line; std::getline(release, line);) {
        if (line.starts_with(key)) {
            return line.substr(key.size(), line.find('"', key.size()) - key.size());
        }
    }
    return {};
}

std::string named(const fs::path& file, const std::string& problem) {
    return problem.empty() ? "" : file.string() + ": " + problem;
}

/// A Java under development has a folder of classes in place of the image.
bool hasUnpackedClasses(const fs::path& folder) {
    std::error_code error;
    return fs::is_directory(folder.parent_path() / "modules/java.base", error);
}

/// What is wrong with the files that the machine of this library opens first; empty if nothing is. It finds them from
/// its own place, with links resolved.
std::string findIncompleteness(const fs::path& libjvm) {
    std::error_code error;
    const fs::path resolved = fs::canonical(libjvm, error);
    const fs::path folder = resolved.parent_path().parent_path();
    std::string problem = named(libjvm, problemOfLibrary(libjvm));
    if (problem.empty()) {
        problem = named(folder / "libjava.so", problemOfLibrary(folder / "libjava.so"));
    }
    if (problem.empty() && !hasUnpackedClasses(folder)) {
        problem = named(folder / "libjimage.so", problemOfLibrary(folder / "libjimage.so"));
        problem = problem.empty() ? named(folder / "modules", problemOfImage(folder / "modules")) : problem;
    }
    return problem;
}

std::string findProblem(const fs::path& home, const JavaHome& found) {
    std::error_code error;
    if (!fs::is_directory(home, error)) {
        return "no such folder";
    }
    if (!found.version.empty() && found.version.front() < static_cast<unsigned>(OldestJava)) {
        return "too old: Java " + std::to_string(OldestJava) + " or newer is needed";
    }
    return found.libjvm.empty() ? "no lib/server/libjvm.so in it" : findIncompleteness(found.libjvm);
}

}  // namespace

JavaHome inspectJavaHome(const fs::path& home) {
    JavaHome found;
    found.libjvm = findLibjvm(home);
    found.statedVersion = readVersion(home);
    found.version = parseVersion(found.statedVersion);
    found.problem = findProblem(home, found);
    return found;
}

}  // namespace storage::jvm::detail

namespace storage::jvm {

int majorVersion(const std::string& version) {
    const std::vector<unsigned> numbers = detail::parseVersion(version);
    return numbers.empty() ? 0 : static_cast<int>(numbers.front());
}

}  // namespace storage::jvm
