#include "java/MachineOptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "java/ArchiveChecksum.h"
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
    const std::filesystem::path archive = classArchiveOf(options, java);
    return hasValidChecksum(archive) ? archive.string() : "";
}

/// What jstore prefers: a small heap and the quickest start. Only the quicker compiler compiles code, and a little
/// later than usual: most commands end before compiling pays.
std::vector<std::string> preferredOptions(const Options& options, const JavaCandidate& java) {
    std::vector<std::string> preferred{"-Xmx128m", "-XX:TieredStopAtLevel=1", "-XX:CompileThresholdScaling=2",
                                       "-Xshare:auto", "-XX:+UseSerialGC"};
    const std::string archive = options.newArchive.empty() ? usedArchive(options, java) : "";
    if (!archive.empty()) {
        preferred.push_back("-XX:SharedArchiveFile=" + archive);
    }
    return preferred;
}

}  // namespace

EmbeddedJVMOptions virtualMachineOptions(const Options& options, const JavaCandidate& java) {
    EmbeddedJVMOptions result;
    result.java = java;
    for (const ClassPathEntry& entry : classPathOf(options)) {
        std::error_code ignored;  // An entry that cannot be examined counts as missing.
        if (std::filesystem::exists(entry.path, ignored)) {
            result.classPath.push_back(entry.path);
        }
    }
    result.defaultOptions = preferredOptions(options, java);
    if (!options.newArchive.empty()) {
        result.jvmOptions.push_back("-XX:ArchiveClassesAtExit=" + options.newArchive.string());
    }
    for (const Mount& mount : options.mounts) {
        result.jvmOptions.push_back(fmt::format("-Dstorage.mount.{}={}", mount.name, mount.uri));
    }
    result.jvmOptions.insert(result.jvmOptions.end(), options.jvmOptions.begin(), options.jvmOptions.end());
    return result;
}

std::vector<JavaCandidate> javaCandidates(const Options& options) {
    if (!options.javaHome.empty()) {
        return {storage::jvm::javaAt(options.javaHome)};
    }
    return storage::jvm::findJava();
}

const JavaCandidate* usable(const std::vector<JavaCandidate>& candidates) {
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [](const JavaCandidate& candidate) { return candidate.problem.empty(); });
    return found == candidates.end() ? nullptr : &*found;
}

}  // namespace jstore
