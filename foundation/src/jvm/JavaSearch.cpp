#include "jvm/JavaSearch.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

#include "jvm/JavaHome.h"

namespace storage::jvm::detail {

namespace fs = std::filesystem;

namespace {

constexpr const char* GivenHome = "given home";

std::string variable(const char* name) {
    // A program with special privileges must not let its caller choose a library.
    const char* const value = secure_getenv(name);
    return value == nullptr ? "" : value;
}

JavaCandidate without(std::string origin, std::string problem) {
    return {std::move(origin), {}, {}, std::move(problem), {}};
}

JavaCandidate candidate(std::string origin, const fs::path& home, const JavaHome& found) {
    return {std::move(origin), home, found.libjvm, found.problem, found.statedVersion};
}

JavaCandidate candidate(std::string origin, const fs::path& home) {
    std::error_code error;
    const fs::path absolute = fs::absolute(home, error);
    const fs::path& place = error ? home : absolute;
    return candidate(std::move(origin), place, inspectJavaHome(place));
}

JavaCandidate fromVariable(const std::string& javaHome) {
    const std::string origin = "JAVA_HOME";
    return javaHome.empty() ? without(origin, "not set") : candidate(origin, javaHome);
}

/// The first executable of the name `java`, with all links resolved.
fs::path findOnPath(const std::string& path) {
    std::istringstream folders(path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        const fs::path program = fs::path(folder.empty() ? "." : folder) / "java";
        std::error_code error;
        if (fs::is_regular_file(program, error) && ::access(program.c_str(), X_OK) == 0) {
            fs::path resolved = fs::canonical(program, error);
            return error ? program : resolved;
        }
    }
    return {};
}

JavaCandidate fromPath(const std::string& path) {
    const std::string origin = "java on PATH";
    const fs::path program = findOnPath(path);
    if (program.empty()) {
        return without(origin, "none found");
    }
    if (program.parent_path().filename() != "bin") {
        return without(origin, program.string() + " is not in the bin folder of a Java home");
    }
    return candidate(origin, program.parent_path().parent_path());
}

using InspectedHome = std::pair<fs::path, JavaHome>;

/// Adds the Java homes right below the folder, each under one name only: distributions link them to each other.
void collectHomes(const fs::path& folder, std::vector<InspectedHome>& homes) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unresolvable;
        const fs::path home = fs::canonical(entry->path(), unresolvable);
        const bool seen = std::ranges::any_of(homes, [&](const InspectedHome& other) { return other.first == home; });
        if (unresolvable || seen) {
            continue;
        }
        JavaHome found = inspectJavaHome(home);
        if (!found.libjvm.empty() || !found.version.empty()) {
            homes.emplace_back(home, std::move(found));
        }
    }
}

/// The newest Java comes first. Equals go by name, so that the choice does not depend on the file system's order.
bool ranksBefore(const InspectedHome& one, const InspectedHome& other) {
    if (one.second.version != other.second.version) {
        return one.second.version > other.second.version;
    }
    return one.first < other.first;
}

std::string joined(const std::vector<fs::path>& folders) {
    std::string text;
    for (const fs::path& folder : folders) {
        text += (text.empty() ? "" : ", ") + folder.string();
    }
    return text;
}

std::vector<JavaCandidate> fromDistribution(const std::vector<fs::path>& folders) {
    const std::string origin = "distribution folder";
    std::vector<InspectedHome> homes;
    for (const fs::path& folder : folders) {
        collectHomes(folder, homes);
    }
    if (homes.empty()) {
        return {without(origin, "no Java in " + joined(folders))};
    }
    std::ranges::sort(homes, ranksBefore);
    std::vector<JavaCandidate> candidates;
    candidates.reserve(homes.size());
    for (const auto& [home, found] : homes) {
        candidates.push_back(candidate(origin, home, found));
    }
    return candidates;
}

}  // namespace

SearchPlaces SearchPlaces::ofProcess() {
    SearchPlaces places;
    places.javaHome = variable("JAVA_HOME");
    places.path = variable("PATH");
    places.distributionFolders = {"/usr/lib/jvm", "/usr/lib64/jvm", "/usr/java", "/opt/java"};
    return places;
}

std::vector<JavaCandidate> searchJava(const fs::path& givenHome, const SearchPlaces& places) {
    std::vector<JavaCandidate> candidates;
    if (!givenHome.empty()) {
        candidates.push_back(javaAt(givenHome));
    }
    candidates.push_back(fromVariable(places.javaHome));
    candidates.push_back(fromPath(places.path));
    std::ranges::move(fromDistribution(places.distributionFolders), std::back_inserter(candidates));
    return candidates;
}

}  // namespace storage::jvm::detail

namespace storage::jvm {

std::string describe(const JavaCandidate& candidate) {
    const std::string home = candidate.home.empty() ? "" : " " + candidate.home.string();
    const std::string problem = candidate.problem.empty() ? "" : ": " + candidate.problem;
    return candidate.origin + home + problem;
}

JavaCandidate javaAt(const std::filesystem::path& home) { return detail::candidate(detail::GivenHome, home); }

}  // namespace storage::jvm
