#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <system_error>

#include "BackEnd.h"
#include "ClassArchive.h"
#include "Location.h"
#include "Problem.h"
#include "Text.h"
#include "doctor/Checks.h"
#include "storage/jvm/ThreadAttachment.h"

namespace jstore::doctor {

namespace fs = std::filesystem;
using foundation::storage::provider::Exception;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;

namespace {

constexpr const char* Subject = "archive";
constexpr const char* NoVersion = "none, since the Java home's file \"release\" states no version";

/// A new folder, removed with all it holds at the end of the scope.
class ScratchFolder {
public:
    ScratchFolder() {
        auto name = (fs::temp_directory_path() / "jstore-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), name);
        }
        m_path = name;
    }
    ~ScratchFolder() {
        std::error_code ignored;  // Nobody is left to tell.
        fs::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const fs::path& path() const noexcept { return m_path; }

private:
    fs::path m_path;
};

/// Does what the verbs do, once: what Java loads meanwhile is what it archives.
void exercise(const IProvider& provider) {
    const ScratchFolder scratch;
    std::ofstream(scratch.path() / "file") << "content";
    const auto at = [&](const char* name) { return toLocation((scratch.path() / name).string()).iri(); };
    provider.createFolder(at("folder"));
    provider.copyFile(at("file"), at("folder/copy"), ReplacementPolicy::KeepExisting);
    provider.createFile(at("folder/new"));
    provider.moveFile(at("folder/copy"), at("folder/new"), ReplacementPolicy::ReplaceExisting);
    provider.moveFolder(at("folder"), at("moved"), ReplacementPolicy::KeepExisting);
    provider.setLastModified(at("file"), provider.getFileAttributes(at("moved/new")).lastModified());
    static_cast<void>(provider.getFolderAttributes(at("moved")));
    static_cast<void>(provider.getExtendedAttributes(at("file")));
    static_cast<void>(provider.getProviderStorageInfo(at("file")));
    static_cast<void>(provider.listAll(at("moved")));
    provider.removeFile(at("file"));
    try {
        provider.removeFile(at("file"));
    } catch (const Exception&) {
        // That it fails is the point: errors have classes of their own.
    }
    provider.removeFolderRecursive(at("moved"));
}

/// Uses a back end as commands do, and ends the machine, which writes the archive then.
void leaveArchive(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options) {
    {
        const storage::jvm::ThreadAttachment attachment(jvm);
        BackEnd backEnd(jvm, options);
        exercise(backEnd.provider());
        if (const auto problem = backEnd.end()) {
            throw CommandError(*problem);
        }
    }
    jvm->shutdown();
}

/// Has a file written to the disk: half an archive, as a power failure may leave it, would crash each command.
void sync(const fs::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    const bool synced = descriptor >= 0 && ::fsync(descriptor) == 0;
    const int error = errno;
    ::close(descriptor);
    if (!synced) {
        throw std::system_error(error, std::generic_category(), file.string());
    }
}

}  // namespace

Check archive(const Options& options, const fs::path& file) {
    const auto name = printable(file.string());
    if (file.empty()) {
        return {Mark::Ok, Subject, NoVersion, {}};
    }
    if (isMapped(file)) {
        return {Mark::Ok, Subject, name + ": used", {}};
    }
    if (!takesClassArchive(options)) {
        return {Mark::Ok, Subject, "not used with --class-path or JSTORE_CLASS_PATH", {}};
    }
    std::error_code ignored;  // A file that cannot be looked at is as good as missing.
    const auto* const why =
        fs::exists(file, ignored) ? "not used: Java, its options or the jars are others" : "not there";
    return {Mark::Warning, Subject, name + ": " + why, "commands start faster after jstore doctor --make-archive"};
}

Check archiveFolder(const fs::path& file) {
    if (file.empty()) {
        return {Mark::Failure, Subject, NoVersion, "name another Java with --java-home"};
    }
    const auto folder = file.parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (!error && ::access(folder.c_str(), W_OK) != 0) {
        error.assign(errno, std::generic_category());
    }
    if (error) {
        return {Mark::Failure, Subject, fmt::format("{}: {}", printable(folder.string()), error.message()),
                "whoever may write into the installation makes the archive"};
    }
    return {Mark::Ok, Subject, printable(folder.string()), {}};
}

Check makeArchive(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Options& options, const fs::path& file) {
    try {
        leaveArchive(jvm, options);
        sync(options.newArchive);
        fs::rename(options.newArchive, file);
        return {Mark::Ok,
                Subject,
                fmt::format("{}: made, {} KiB", printable(file.string()), fs::file_size(file) >> 10),
                {}};
    } catch (const std::exception& error) {
        std::error_code ignored;  // It need not be there at all.
        fs::remove(options.newArchive, ignored);
        return {Mark::Failure, Subject, fmt::format("{}: {}", printable(file.string()), error.what()),
                "Java 13 or newer can make one"};
    }
}

}  // namespace jstore::doctor
