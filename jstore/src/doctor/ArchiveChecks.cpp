#include <fmt/format.h>
#include <unistd.h>

#include <exception>

#include "base/Text.h"
#include "doctor/ArchiveMaking.h"
#include "doctor/Checks.h"
#include "java/ArchiveSeal.h"
#include "java/ClassArchive.h"
#include "java/JavaVersion.h"

namespace jstore::doctor {

namespace fs = std::filesystem;
using storage::jvm::JavaCandidate;

namespace {

constexpr const char* Subject = "archive";
constexpr const char* NoVersion = "none, since the Java home's file \"release\" states no version";

const char* whyUnused(const fs::path& file) {
    if (::access(file.c_str(), F_OK) != 0) {
        return "not there";
    }
    if (::access(file.c_str(), R_OK) != 0) {
        return "may not be read";
    }
    return isSealed(file) ? "not used: Java, its options or the jars are others"
                          : "not used: it is damaged, or was made by another version of jstore";
}

}  // namespace

Check archive(const Options& options, const JavaCandidate& java) {
    const auto file = classArchiveOf(options, java);
    if (file.empty()) {
        return {Mark::Ok, Subject, NoVersion, {}};
    }
    const auto name = printable(file.string());
    if (isMapped(file)) {
        return {Mark::Ok, Subject, name + ": used", {}};
    }
    if (!takesClassArchive(options)) {
        return {Mark::Ok, Subject, "not used with --class-path or JSTORE_CLASS_PATH", {}};
    }
    return {Mark::Warning, Subject, name + ": " + whyUnused(file),
            "commands start faster after jstore doctor --make-archive"};
}

Check makeArchive(const Options& options, const JavaCandidate& java) {
    constexpr int oldest = 13;
    const auto& version = java.version;
    if (majorOf(version) < oldest) {
        return {Mark::Failure, Subject, version.empty() ? NoVersion : "Java " + version + " cannot make one",
                fmt::format("name Java {} or newer with --java-home", oldest)};
    }
    const auto file = classArchiveOf(options, java);
    try {
        makeClassArchive(options, file);
        const auto detail = fmt::format("{}: made, {} KiB", printable(file.string()), fs::file_size(file) >> 10);
        return {Mark::Ok, Subject, detail, {}};
    } catch (const std::exception& error) {
        const auto detail = fmt::format("{}: not made: {}", printable(file.string()), printable(error.what()));
        return {Mark::Failure, Subject, detail, "whoever may write into the installation makes the archive"};
    }
}

}  // namespace jstore::doctor
