#include <fmt/format.h>
#include <unistd.h>

#include <exception>

#include "base/Text.h"
#include "doctor/ArchiveMaking.h"
#include "doctor/Checks.h"
#include "java/ArchiveChecksum.h"
#include "java/ClassArchive.h"

namespace jstore::doctor {

namespace fs = std::filesystem;
using storage::jvm::JavaCandidate;

namespace {

constexpr const char* Subject = "archive";
constexpr const char* NoVersion = "none: the file \"release\" in the Java home states no version";

const char* whyUnused(const fs::path& file) {
    if (::access(file.c_str(), F_OK) != 0) {
        return "does not exist";
    }
    if (::access(file.c_str(), R_OK) != 0) {
        return "cannot be read";
    }
    return hasValidChecksum(file) ? "not used: Java, its options or the jars have changed"
                                  : "not used: damaged, or made by another version of jstore";
}

}  // namespace

Check archive(const Options& options, const JavaCandidate& java) {
    const fs::path file = classArchiveOf(options, java);
    if (file.empty()) {
        return {Mark::Ok, Subject, NoVersion, {}};
    }
    const std::string name = printable(file.string());
    if (isMapped(file)) {
        return {Mark::Ok, Subject, name + ": used", {}};
    }
    if (!takesClassArchive(options)) {
        return {Mark::Ok, Subject, "not used with --class-path or JSTORE_CLASS_PATH", {}};
    }
    return {Mark::Warning, Subject, name + ": " + whyUnused(file),
            "run jstore doctor --make-archive; commands then start faster"};
}

Check makeArchive(const Options& options, const JavaCandidate& java) {
    constexpr int oldest = 13;
    const std::string& version = java.version;
    if (storage::jvm::majorVersion(version) < oldest) {
        return {Mark::Failure, Subject,
                version.empty() ? NoVersion : "Java " + version + " cannot make a class archive",
                fmt::format("use Java {} or newer, by --java-home", oldest)};
    }
    const fs::path file = classArchiveOf(options, java);
    try {
        makeClassArchive(options, java, file);
        const std::string detail = fmt::format("{}: made, {} KiB", printable(file.string()), fs::file_size(file) >> 10);
        return {Mark::Ok, Subject, detail, {}};
    } catch (const std::exception& error) {
        const std::string detail = fmt::format("{}: not made: {}", printable(file.string()), printable(error.what()));
        return {Mark::Failure, Subject, detail, "run --make-archive as a user who may write to the installation"};
    }
}

}  // namespace jstore::doctor
