#include "hosts/HostProcess.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <stdexcept>

#include "OwnProcess.h"
#include "TemporaryFolder.h"
#include "fl/i18n/text.h"
#include "storage/javaprovider/EntryPoints.h"

namespace storage::javaprovider::test {

namespace fs = std::filesystem;
using foundation::storage::provider::ByteStream;
using foundation::storage::provider::ByteStreamOpenOptions;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::StorageIRI;

namespace {

/// A file in memory that takes a process's output.
class OutputFile {
public:
    OutputFile() : m_file(memfd_create("output", MFD_CLOEXEC)) {
        if (m_file == -1) {
            throw std::runtime_error("no file for the output");
        }
    }
    ~OutputFile() { close(m_file); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// The calling process writes here from now on.
    void takeOutput() const {
        dup2(m_file, STDOUT_FILENO);
        dup2(m_file, STDERR_FILENO);
    }

    [[nodiscard]] std::string text() const {
        std::string all;
        std::array<char, 4096> part{};
        for (ssize_t count = 1; count > 0;) {
            count = pread(m_file, part.data(), part.size(), static_cast<off_t>(all.size()));
            all.append(part.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        }
        return all;
    }

private:
    int m_file;
};

/// Where a crash would leave its report and, if the system allows it, its memory.
void enter(const fs::path& folder) {
    fs::current_path(folder);
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_CORE, &limit);
}

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

std::vector<fs::path> classPath() {
    std::vector<fs::path> entries;
    std::istringstream in(HOSTS_CLASS_PATH);
    for (std::string entry; std::getline(in, entry, ':');) {
        entries.emplace_back(entry);
    }
    return entries;
}

}  // namespace

HostEnd endOf(const std::function<void(const fs::path& data)>& host) {
    const ::test::TemporaryFolder folder;
    const fs::path data = folder.path() / "data";
    const fs::path work = folder.path() / "work";
    fs::create_directory(data);
    fs::create_directory(work);
    const OutputFile output;
    HostEnd end;
    end.status = ::test::waitStatusOf([&] {
        enter(work);
        output.takeOutput();
        host(data);
    });
    end.output = output.text();
    end.files = namesIn(work);
    return end;
}

void expectSilentExit(const std::function<void(const fs::path& data)>& host, int code) {
    const HostEnd end = endOf(host);
    EXPECT_TRUE(WIFEXITED(end.status)) << "killed by signal " << WTERMSIG(end.status);
    EXPECT_EQ(WEXITSTATUS(end.status), code);
    EXPECT_EQ(end.output, "");
    EXPECT_EQ(end.files, std::vector<std::string>());
}

std::shared_ptr<storage::jvm::EmbeddedJVM> startMachine() {
    storage::jvm::EmbeddedJVMOptions options;
    options.classPath = classPath();
    options.maxHeapMiB = 64;
    return storage::jvm::EmbeddedJVM::start(options);
}

std::unique_ptr<IProvider> makeProvider(const std::shared_ptr<jvm_interface::JVM>& jvm) {
    return std::unique_ptr<IProvider>(buildProvider(jvm, "com/corvallen/storage/backend/nio/NioProvider"));
}

StorageIRI at(const fs::path& folder) { return StorageIRI(u"java://" + fl::i18n::to_ustring(folder.string())); }

StorageIRI in(const fs::path& folder, const std::u16string& name) { return at(folder).getChild(name); }

std::unique_ptr<ByteStream> openNew(const IProvider& provider, const fs::path& folder, const std::u16string& name) {
    ByteStreamOpenOptions options;
    options.creation = decltype(options.creation)::CreateIfMissing;
    return provider.openByteStream(in(folder, name), options);
}

void expectWorks(const IProvider& provider, const fs::path& folder, const std::u16string& name) {
    const StorageIRI file = in(folder, name);
    const auto stream = openNew(provider, folder, name);
    EXPECT_EQ(stream->write("content", 7), 7);
    EXPECT_EQ(std::streamoff(stream->seek(0, std::ios_base::beg)), 0);
    std::array<char, 16> memory{};
    EXPECT_EQ(stream->read(memory.data(), memory.size()), 7);
    stream->close();
    EXPECT_STREQ(memory.data(), "content");
    EXPECT_TRUE(fs::exists(folder / fl::i18n::to_string(name)));
    EXPECT_EQ(provider.getFileAttributes(file).size(), 7U);
    provider.removeFile(file);
    EXPECT_FALSE(provider.fileExists(file));
}

}  // namespace storage::javaprovider::test
