#include "java/MachineOptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "java/ArchiveSeal.h"
#include "java/ClassArchive.h"
#include "java/ClassPath.h"

namespace jstore {

using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::JavaCandidate;

namespace {

/// The class archive that commands use; empty where none is there that Java could use. One that may not be read would
/// cost Java even the archive of its own classes, and one that is damaged would end the process.
std::string usedArchive(const Options& options, const JavaCandidate& java) {
    if (!takesClassArchive(options)) {
        return {};
    }
    const auto archive = classArchiveOf(options, java);
    return isSealed(archive) ? archive.string() : "";
}

/// What jstore prefers: a small heap and the quickest start. Compiled by the quicker compiler, and a little later,
/// since most commands are over before it pays.
std::vector<std::string> preferredOptions(const Options& options, const JavaCandidate& java) {
    std::vector<std::string> preferred{"-Xmx128m", "-XX:TieredStopAtLevel=1", "-XX:CompileThresholdScaling=2",
                                       "-Xshare:auto", "-XX:+UseSerialGC"};
    const auto archive = options.newArchive.empty() ? usedArchive(options, java) : "";
    if (!archive.empty()) {
        preferred.push_back("-XX:SharedArchiveFile=" + archive);
    }
    return preferred;
}

}  // namespace

EmbeddedJVMOptions virtualMachineOptions(const Options& options, const JavaCandidate& java) {
    EmbeddedJVMOptions result;
    result.javaHome = options.javaHome;
    for (const auto& entry : classPathOf(options)) {
        std::error_code ignored;  // An entry that cannot even be looked at is as good as missing.
        if (std::filesystem::exists(entry.path, ignored)) {
            result.classPath.push_back(entry.path);
        }
    }
    result.defaultOptions = preferredOptions(options, java);
    if (!options.newArchive.empty()) {
        result.jvmOptions.push_back("-XX:ArchiveClassesAtExit=" + options.newArchive.string());
    }
    for (const auto& mount : options.mounts) {
        result.jvmOptions.push_back(fmt::format("-Dstorage.mount.{}={}", mount.name, mount.uri));
    }
    result.jvmOptions.insert(result.jvmOptions.end(), options.jvmOptions.begin(), options.jvmOptions.end());
    return result;
}

std::vector<JavaCandidate> javaCandidates(const Options& options) {
    EmbeddedJVMOptions search;
    search.javaHome = options.javaHome;
    auto candidates = storage::jvm::findJava(search);
    if (!options.javaHome.empty()) {
        candidates.resize(std::min<std::size_t>(candidates.size(), 1));
    }
    return candidates;
}

const JavaCandidate* usable(const std::vector<JavaCandidate>& candidates) {
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [](const JavaCandidate& candidate) { return candidate.problem.empty(); });
    return found == candidates.end() ? nullptr : &*found;
}

std::string describe(const JavaCandidate& candidate) {
    const auto home = candidate.home.empty() ? "" : " " + candidate.home.string();
    const auto problem = candidate.problem.empty() ? "" : ": " + candidate.problem;
    return candidate.origin + home + problem;
}

}  // namespace jstore
