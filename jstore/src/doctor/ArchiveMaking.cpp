#include "doctor/ArchiveMaking.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include "BackEnd.h"
#include "Location.h"
#include "Problem.h"
#include "Session.h"
#include "foundation/storage/provider/Exception.h"
#include "storage/jvm/ThreadAttachment.h"

namespace jstore::doctor {

namespace fs = std::filesystem;
using foundation::storage::provider::Exception;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;

namespace {

[[noreturn]] void fail(const std::string& subject) { throw std::system_error(errno, std::generic_category(), subject); }

/// An open file, closed at the end of the scope.
class Descriptor {
public:
    explicit Descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
    ~Descriptor() { ::close(m_descriptor); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int get() const noexcept { return m_descriptor; }

private:
    int m_descriptor;
};

/// A new folder, removed with all it holds at the end of the scope.
class ScratchFolder {
public:
    ScratchFolder() {
        auto name = (fs::temp_directory_path() / "jstore-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            fail(name);
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

/// What the child does: uses a back end as commands do, and ends the machine.
void leaveArchive(const Options& options) {
    const auto jvm = startJava(options);
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

/// The child's way from its first instruction to its last. What it has to say, and what Java prints, goes to `output`.
/// A full disk, for one, ends the process in the midst of Java.
[[noreturn]] void runChild(const Options& options, int output) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGINT, SIG_DFL);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    try {
        leaveArchive(options);
        std::_Exit(EXIT_SUCCESS);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::flush;
        std::_Exit(EXIT_FAILURE);
    }
}

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer{};
    while (true) {
        const auto count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

/// Waits for the child's end; whether it ended well.
bool endedWell(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            fail("waitpid");
        }
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
}

void runInChild(const Options& options) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail("pipe");
    }
    const Descriptor reading(ends[0]);
    auto writing = std::make_unique<Descriptor>(ends[1]);
    const pid_t child = ::fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        runChild(options, writing->get());
    }
    writing.reset();
    const auto words = readAll(reading.get());
    if (!endedWell(child) || !fs::exists(options.newArchive)) {
        throw std::runtime_error(words.empty() ? "Java ended without a word; is the disk full?" : words);
    }
}

/// Has everyone read the file, and the disk hold it: half an archive, as a power failure may leave it, would end each
/// command.
void complete(const fs::path& file) {
    constexpr mode_t readable = 0644;
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (::fchmod(descriptor.get(), readable) != 0 || ::fsync(descriptor.get()) != 0) {
        fail(file.string());
    }
}

}  // namespace

void makeClassArchive(const Options& options, const fs::path& archive) {
    const auto folder = archive.parent_path();
    fs::create_directories(folder);
    const Descriptor lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (::flock(lock.get(), LOCK_EX) != 0 || ::access(folder.c_str(), W_OK) != 0) {
        fail(folder.string());
    }
    Options making = options;
    making.newArchive = archive.string() + ".tmp";
    try {
        runInChild(making);
        complete(making.newArchive);
        fs::rename(making.newArchive, archive);
    } catch (...) {
        std::error_code ignored;  // It need not be there at all.
        fs::remove(making.newArchive, ignored);
        throw;
    }
}

}  // namespace jstore::doctor
