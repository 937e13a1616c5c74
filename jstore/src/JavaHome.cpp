#include "JavaHome.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "ClassArchive.h"
#include "ClassPath.h"

namespace jstore {

using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::JavaCandidate;

namespace {

constexpr std::size_t HeapMiB = 128;

bool choosesCollector(const std::string& option) {
    constexpr std::string_view prefix = "-XX:+Use";
    return option.starts_with(prefix) && option.ends_with("GC");
}

/// Whether the user says which archive to use or make; Java refuses some mixtures.
bool choosesArchive(const std::string& option) {
    return option.starts_with("-XX:SharedArchiveFile=") || option.starts_with("-XX:ArchiveClassesAtExit=");
}

/// Empty, or the option about the class archive that is made or used. A file that is not there, or may not be read,
/// would cost Java even the archive of its own classes.
std::string archiveOption(const Options& options, const JavaCandidate& java) {
    if (!options.newArchive.empty()) {
        return "-XX:ArchiveClassesAtExit=" + options.newArchive.string();
    }
    if (!takesClassArchive(options) || std::ranges::any_of(options.jvmOptions, choosesArchive)) {
        return {};
    }
    const auto archive = classArchiveOf(options, java);
    return ::access(archive.c_str(), R_OK) == 0 ? "-XX:SharedArchiveFile=" + archive.string() : "";
}

}  // namespace

EmbeddedJVMOptions virtualMachineOptions(const Options& options, const JavaCandidate& java) {
    EmbeddedJVMOptions result;
    result.javaHome = options.javaHome;
    result.maxHeapMiB = HeapMiB;
    for (const auto& entry : classPathOf(options)) {
        std::error_code ignored;  // An entry that cannot even be looked at is as good as missing.
        if (std::filesystem::exists(entry.path, ignored)) {
            result.classPath.push_back(entry.path);
        }
    }
    // Compiled by the quicker compiler, and a little later, since most commands are over before it pays.
    result.jvmOptions = {"-XX:TieredStopAtLevel=1", "-XX:CompileThresholdScaling=2", "-Xshare:auto"};
    if (auto archive = archiveOption(options, java); !archive.empty()) {
        result.jvmOptions.push_back(std::move(archive));
    }
    // Two collectors at once are refused, so the default steps back for the user's.
    if (std::none_of(options.jvmOptions.begin(), options.jvmOptions.end(), choosesCollector)) {
        result.jvmOptions.emplace_back("-XX:+UseSerialGC");
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
