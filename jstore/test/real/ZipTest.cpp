#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <map>
#include <set>
#include <sstream>

#include "real/FileTree.h"
#include "real/ZipWriter.h"
#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

/// What a file in an archive is known by.
struct Known {
    std::uint64_t size = 0;
    std::uint32_t checksum = 0;

    bool operator==(const Known&) const = default;
};

void PrintTo(const Known& known, std::ostream* out) { *out << known.size << " bytes, checksum " << known.checksum; }

/// Archives as the tools zip and unzip make and see them.
class ZipTest : public ::testing::Test {
protected:
    ZipTest() {
        m_folder.folder("tree/empty folder");
        m_folder.folder("tree/deep/er/still");
        m_folder.file("tree/empty");
        m_folder.file("tree/text", "some text\n");
        m_folder.file(
            "tree/gr\xC3\xBC\xC3\x9F"
            "e \xF0\x9F\x98\x80",
            "greetings");
        m_folder.file("tree/deep/100% #1?", "marks");
        m_folder.file("tree/deep/er/large", std::string(3'000'000, 'x') + "end");
        m_folder.file("tree/deep/er/still/binary", std::string("\0\x01\xFF\xFE", 4));
    }

    /// Runs a shell command in the folder of the test; its output. The test fails with the command.
    [[nodiscard]] std::string shell(const std::string& command) const {
        const auto line = "cd '" + m_folder.path().string() + "' && export LC_ALL=C.UTF-8 && " + command;
        FILE* const pipe = ::popen(line.c_str(), "r");
        if (pipe == nullptr) {
            throw std::runtime_error("no pipe");
        }
        std::string output;
        std::array<char, 4096> buffer{};
        while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
            output.append(buffer.data(), count);
        }
        EXPECT_EQ(::pclose(pipe), 0) << command << '\n' << output;
        return output;
    }

    /// Runs with the archive mounted as "zip".
    [[nodiscard]] Outcome mounted(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--mount", "zip=jar:file://" + (m_folder / "a.zip").string()});
        return jstore(std::move(arguments));
    }

    void makeArchive() const { static_cast<void>(shell("cd tree && zip -qr ../a.zip .")); }

    /// What unzip says of the files.
    [[nodiscard]] std::map<std::string, Known> knownToUnzip() const {
        std::map<std::string, Known> files;
        std::istringstream lines(shell("unzip -lv a.zip | grep -aE '^ *[0-9]+ +[A-Z]'"));
        for (std::string line; std::getline(lines, line);) {
            Known known;
            std::array<char, 16> method{};
            unsigned packed = 0;
            int name = 0;
            unsigned long size = 0;
            const int read = std::sscanf(line.c_str(), " %lu %15s %u %*s %*s %*s %x %n", &size, method.data(), &packed,
                                         &known.checksum, &name);
            EXPECT_EQ(read, 4) << line;
            known.size = size;
            files[line.substr(static_cast<std::size_t>(name))] = known;
        }
        std::erase_if(files, [](const auto& file) { return file.first.ends_with('/'); });
        return files;
    }

    /// What jstore says of the files: their sizes by stat, their checksums by reading them.
    [[nodiscard]] std::map<std::string, Known> knownToJstore() const {
        std::map<std::string, Known> files;
        for (const auto& found : objectsOf(mounted({"--json", "find", "--type", "f", "java://zip/"}))) {
            const std::string location = found.at("location");
            const auto content = mounted({"cat", location});
            EXPECT_EQ(content.exitCode, 0) << content.err;
            const auto stat = objectsOf(mounted({"--json", "stat", location})).at(0);
            EXPECT_EQ(stat.at("size"), content.out.size());
            files[decoded(location.substr(std::string("java://zip/").size()))] = {stat.at("size"), crc32(content.out)};
        }
        return files;
    }

    static std::string decoded(const std::string& text) {
        std::string result;
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == '%') {
                result += static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16));
                at += 2;
            } else {
                result += text[at];
            }
        }
        return result;
    }

    TemporaryFolder m_folder;
};

TEST_F(ZipTest, NamesAreThoseThatUnzipLists) {
    makeArchive();
    std::set<std::string> listed;
    std::istringstream lines(shell("unzip -Z1 a.zip"));
    for (std::string line; std::getline(lines, line);) {
        listed.insert(line);
    }
    std::set<std::string> found;
    for (const auto& object : objectsOf(mounted({"--json", "find", "java://zip/"}))) {
        const auto name = decoded(object.at("location").get<std::string>().substr(std::string("java://zip/").size()));
        found.insert(object.at("type") == "folder" ? name + '/' : name);
    }
    found.erase("/");
    EXPECT_EQ(found, listed);
}

TEST_F(ZipTest, SizesAndChecksumsAreThoseThatUnzipLists) {
    makeArchive();
    const auto expected = knownToUnzip();
    EXPECT_EQ(expected.size(), 6U);
    EXPECT_EQ(knownToJstore(), expected);
}

TEST_F(ZipTest, WhatWasCopiedInIsWhatUnzipTakesOut) {
    m_folder.file("a.zip", ZipWriter().add("there before", "kept").bytes());
    ASSERT_THAT(mounted({"cp", "-r", m_folder.location("tree"), "java://zip/tree"}), IsSilentlyDone());
    EXPECT_THAT(shell("unzip -t a.zip"), HasSubstr("No errors detected"));
    static_cast<void>(shell("TZ=UTC unzip -q a.zip -d out"));
    EXPECT_EQ(contentOf(m_folder / "out/there before"), "kept");
    EXPECT_EQ(readTree(m_folder / "tree").files(), 6U);
    EXPECT_THAT(shell("diff -r tree out/tree"), IsEmpty());
    EXPECT_EQ(knownToJstore(), knownToUnzip());
}

TEST_F(ZipTest, ReplacedAndRemovedFilesLeaveASoundArchive) {
    makeArchive();
    m_folder.file("new text", "other text");
    ASSERT_THAT(mounted({"cp", "--replace", m_folder.location("new text"), "java://zip/text"}), IsSilentlyDone());
    ASSERT_THAT(mounted({"rm", "-r", "java://zip/deep"}), IsSilentlyDone());
    EXPECT_THAT(shell("unzip -t a.zip"), HasSubstr("No errors detected"));
    EXPECT_EQ(shell("unzip -p a.zip text"), "other text");
    EXPECT_EQ(knownToJstore(), knownToUnzip());
    EXPECT_EQ(knownToUnzip().size(), 3U);
}

TEST_F(ZipTest, OtherWriterKeepsThisOneOutAndNoReader) {
    makeArchive();
    const auto draft = m_folder.file(".storage-archive-a.zip");
    const int other = ::open(draft.c_str(), O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(::fcntl(other, F_SETLK, &lock), 0);
    m_folder.file("new", "other text");
    const std::vector<std::string> copy{"cp", m_folder.location("new"), "java://zip/new"};
    EXPECT_THAT(mounted(copy), FailsWith(1, "jstore: InUse: java://zip/new: another program is writing this archive"));
    EXPECT_THAT(mounted({"cat", "java://zip/text"}), Prints("some text\n"));
    EXPECT_TRUE(fs::exists(draft));
    ::close(other);
    EXPECT_THAT(mounted(copy), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(draft)) << "its maker is gone";
    EXPECT_EQ(shell("unzip -p a.zip new"), "other text");
}

TEST_F(ZipTest, WhatWasMovedBeforeASignalIsInTheArchive) {
    ZipWriter archive;
    archive.add("d/there before", "kept");
    std::vector<std::string> command{"--json", "--mount", "zip=jar:file://" + (m_folder / "a.zip").string(), "mv"};
    const std::string content(200'000, 'x');
    for (int number = 0; number < 60; ++number) {
        archive.add(std::to_string(number), content);
        command.push_back("java://zip/" + std::to_string(number));
    }
    command.emplace_back("java://zip/d");
    // Several times: a signal may arrive while the archive is not being read.
    for (const std::size_t lines : {5UL, 10UL, 15UL}) {
        m_folder.file("a.zip", archive.bytes());
        Jstore run(command);
        run.start();
        ASSERT_TRUE(run.readUntil([lines](const Outcome& soFar) { return soFar.outLines().size() > lines; }));
        ::kill(run.pid(), SIGINT);
        const auto outcome = run.wait();
        EXPECT_EQ(outcome.exitCode, 130);
        EXPECT_THAT(outcome.errLines(), ElementsAre(StartsWith("jstore: interrupted: ")));
        const auto moved = outcome.outLines().size() - 1;
        EXPECT_EQ(shell("unzip -tqq a.zip && unzip -Z1 a.zip 'd/[0-9]*' | wc -l"), std::to_string(moved) + "\n");
    }
}

TEST_F(ZipTest, LinkToAnArchiveStaysALink) {
    makeArchive();
    fs::rename(m_folder / "a.zip", m_folder / "real.zip");
    fs::create_symlink("real.zip", m_folder / "a.zip");
    m_folder.file("new", "other text");
    ASSERT_THAT(mounted({"cp", m_folder.location("new"), "java://zip/new"}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_symlink(m_folder / "a.zip"));
    EXPECT_EQ(shell("unzip -p real.zip new"), "other text");
}

}  // namespace

}  // namespace jstore::test
