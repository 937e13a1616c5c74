#include "doctor/ArchiveMaking.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "base/Location.h"
#include "base/Problem.h"
#include "foundation/storage/provider/Exception.h"
#include "java/ArchiveChecksum.h"
#include "java/BackEnd.h"
#include "java/Session.h"
#include "process/ChildProcess.h"
#include "process/Descriptor.h"
#include "process/Interrupt.h"
#include "storage/jvm/ThreadAttachment.h"

namespace jstore::doctor {

namespace fs = std::filesystem;
using foundation::storage::provider::Exception;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;
using storage::jvm::EmbeddedJVM;

namespace {

[[noreturn]] void fail(const std::string& subject) { throw std::system_error(errno, std::generic_category(), subject); }

/// A new folder, removed with all it holds at the end of the scope.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string name = (fs::temp_directory_path() / "jstore-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            fail(name);
        }
        m_path = name;
    }
    ~ScratchFolder() {
        std::error_code ignored;  // Nobody is left to report it to.
        fs::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const fs::path& path() const noexcept { return m_path; }

private:
    fs::path m_path;
};

/// Does what the verbs do, once. Java archives the classes that it loads for that.
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
        // The failure is intended: it loads the classes for errors.
    }
    provider.removeFolderRecursive(at("moved"));
}

/// Uses a back end as commands do, and ends the machine, which then writes the archive. A full disk ends the process
/// while it writes.
void leaveArchive(const Options& options, const storage::jvm::JavaCandidate& java) {
    const std::shared_ptr<EmbeddedJVM> jvm = startJava(options, {java});
    {
        const storage::jvm::ThreadAttachment attachment(jvm);
        BackEnd backEnd(jvm, options);
        exercise(backEnd.provider());
        if (const std::optional<Problem> problem = backEnd.end()) {
            throw CommandError(*problem);
        }
    }
    jvm->shutdown();
}

/// Makes the file readable for everyone, and writes it to the disk: half an archive, which a power failure could leave,
/// would end each command.
void complete(const fs::path& file) {
    constexpr mode_t readable = 0644;
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC), file.string());
    if (::fchmod(descriptor.get(), readable) != 0 || ::fsync(descriptor.get()) != 0) {
        fail(file.string());
    }
}

}  // namespace

void makeClassArchive(const Options& options, const storage::jvm::JavaCandidate& java, const fs::path& archive) {
    const fs::path folder = archive.parent_path();
    fs::create_directories(folder);
    const Descriptor lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), folder.string());
    if (::flock(lock.get(), LOCK_EX) != 0 || ::access(folder.c_str(), W_OK) != 0) {
        fail(folder.string());
    }
    stopIfInterrupted();
    Options making = options;
    making.newArchive = archive.string() + ".tmp";
    try {
        const ChildEnd end = runInChild([&] { leaveArchive(making, java); });
        if (!end.well || !fs::exists(making.newArchive)) {
            throw std::runtime_error(end.words.empty() ? "Java ended without a message; the disk may be full"
                                                       : end.words);
        }
        appendChecksum(making.newArchive);
        complete(making.newArchive);
        fs::rename(making.newArchive, archive);
    } catch (...) {
        std::error_code ignored;  // It need not be there at all.
        fs::remove(making.newArchive, ignored);
        throw;
    }
}

}  // namespace jstore::doctor
