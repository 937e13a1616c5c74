#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class CpTest : public ::testing::Test {
protected:
    CpTest() { m_folder.file("a", "content of a"); }

    [[nodiscard]] std::string at(std::string_view name) const { return m_folder.location(name); }

    /// How many files and folders are directly in the folder of the test.
    [[nodiscard]] std::ptrdiff_t count() const {
        return std::distance(fs::directory_iterator(m_folder.path()), fs::directory_iterator());
    }

    /// A time that the system's clock is not near, in whole milliseconds.
    static fs::file_time_type longAgo() {
        return std::chrono::floor<std::chrono::milliseconds>(fs::file_time_type::clock::now()) -
               std::chrono::hours(24 * 365);
    }

    TemporaryFolder m_folder;
};

TEST_F(CpTest, FileIsCopiedWithItsTime) {
    const auto time = longAgo();
    fs::last_write_time(m_folder / "a", time);
    EXPECT_THAT(jstore({"cp", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_EQ("content of a", contentOf(m_folder / "a"));
    EXPECT_EQ("content of a", contentOf(m_folder / "b"));
    EXPECT_EQ(time, fs::last_write_time(m_folder / "b"));
    EXPECT_EQ(2, count());
}

TEST_F(CpTest, LargeFileArrivesWhole) {
    std::string bytes;
    for (int i = 0; i < 1'000'001; ++i) {
        bytes += static_cast<char>(i * 31 % 251);
    }
    m_folder.file("large", bytes);
    EXPECT_THAT(jstore({"cp", at("large"), at("copy")}), IsSilentlyDone());
    EXPECT_EQ(bytes, contentOf(m_folder / "copy"));
}

TEST_F(CpTest, LocalFileGoesToAMountAndBack) {
    m_folder.folder("data");
    const auto mount = "data=" + (m_folder / "data").string();
    EXPECT_THAT(Jstore({"--mount", mount, "cp", "a", "java://data/"}).in(m_folder.path()).run(), IsSilentlyDone());
    EXPECT_EQ("content of a", contentOf(m_folder / "data/a"));
    EXPECT_THAT(Jstore({"--mount", mount, "cp", "java://data/a", "b"}).in(m_folder.path()).run(), IsSilentlyDone());
    EXPECT_EQ("content of a", contentOf(m_folder / "b"));
}

TEST_F(CpTest, FileGoesIntoAnArchive) {
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto mount = "zip=jar:file://" + archive.string();
    EXPECT_THAT(jstore({"--mount", mount, "cp", at("a"), "java://zip/new"}), IsSilentlyDone());
    EXPECT_THAT(jstore({"--mount", mount, "cat", "java://zip/new"}), Prints("content of a"));
    EXPECT_THAT(jstore({"--mount", mount, "ls", "java://zip/"}), Prints("META-INF\ncom\nnew\n"));
}

TEST_F(CpTest, FolderTakesFilesIn) {
    m_folder.file("b c", "content of b");
    m_folder.folder("d");
    EXPECT_THAT(jstore({"cp", at("a"), at("b c"), at("d")}), IsSilentlyDone());
    EXPECT_EQ("content of a", contentOf(m_folder / "d/a"));
    EXPECT_EQ("content of b", contentOf(m_folder / "d/b c"));
}

TEST_F(CpTest, SeveralSourcesNeedAFolder) {
    EXPECT_THAT(jstore({"cp", at("a"), at("a"), at("c")}), FailsWith(1, StartsWith("jstore: NotAFolder: " + at("c"))));
}

TEST_F(CpTest, MissingIsThree) {
    EXPECT_THAT(jstore({"cp", at("x"), at("y")}), FailsWith(3, "jstore: NotFound: " + at("x")));
    EXPECT_THAT(jstore({"cp", at("a"), at("x/y")}), FailsWith(3, StartsWith("jstore: NotFound: " + at("x"))));
    EXPECT_EQ(1, count());
}

TEST_F(CpTest, FileAtTheTargetIsKept) {
    m_folder.file("b", "content of b");
    EXPECT_THAT(jstore({"cp", at("a"), at("b")}), FailsWith(4, "jstore: AlreadyExists: " + at("b")));
    EXPECT_EQ("content of b", contentOf(m_folder / "b"));
    EXPECT_EQ(2, count());
}

TEST_F(CpTest, FileIsReplacedOnRequest) {
    m_folder.file("b", "content of b, which is longer");
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_EQ("content of a", contentOf(m_folder / "b"));
}

TEST_F(CpTest, FileNeverReplacesAFolder) {
    m_folder.folder("d/a/inside");
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), at("d")}), FailsWith(1, HasSubstr("NotAFile: " + at("d/a"))));
    EXPECT_TRUE(fs::is_directory(m_folder / "d/a/inside"));
}

TEST_F(CpTest, FileIsNotCopiedOntoItself) {
    EXPECT_THAT(jstore({"cp", at("a"), at("a")}), FailsWith(4, HasSubstr("AlreadyExists")));
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), (m_folder / "./a").string()}),
                FailsWith(4, HasSubstr("the same file")));
    EXPECT_EQ("content of a", contentOf(m_folder / "a"));
}

TEST_F(CpTest, RefusingPlaceIsFive) {
    EXPECT_THAT(jstore({"cp", at("a"), "java:///sys/jstore-test"}),
                FailsWith(5, StartsWith("jstore: AccessDenied: java:///sys")));
}

TEST_F(CpTest, FileThatClaimsToBeEmptyIsCopiedWhole) {
    EXPECT_THAT(jstore({"cp", "java:///proc/version", at("version")}), IsSilentlyDone());
    EXPECT_EQ(contentOf("/proc/version"), contentOf(m_folder / "version"));
}

TEST_F(CpTest, WhatIsNeitherFileNorFolderIsNotSupported) {
    ASSERT_EQ(0, ::mkfifo((m_folder / "pipe").c_str(), 0600));
    EXPECT_THAT(jstore({"cp", at("pipe"), at("b")}), FailsWith(8, StartsWith("jstore: NotSupported: " + at("pipe"))));
    EXPECT_FALSE(fs::exists(m_folder / "b"));
}

TEST_F(CpTest, WhatIsNeitherFileNorFolderIsNotReplaced) {
    ASSERT_EQ(0, ::mkfifo((m_folder / "pipe").c_str(), 0600));
    fs::create_symlink("pipe", m_folder / "link");
    for (const auto* const target : {"pipe", "link"}) {
        EXPECT_THAT(
            jstore({"cp", "--replace", at("a"), at(target)}),
            FailsWith(8, AllOf(StartsWith("jstore: NotSupported: " + at(target)), HasSubstr("never replaced"))));
    }
    EXPECT_TRUE(fs::is_fifo(m_folder / "pipe"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ(3, count());
}

TEST_F(CpTest, LinkAtTheTargetIsWrittenThrough) {
    m_folder.file("b", "content of b");
    fs::permissions(m_folder / "b", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("b", m_folder / "link");
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), at("link")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ("content of a", contentOf(m_folder / "b"));
    EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write, fs::status(m_folder / "b").permissions());
    EXPECT_EQ(3, count());
}

TEST_F(CpTest, SameFileUnderAnotherNameIsRefused) {
    fs::create_hard_link(m_folder / "a", m_folder / "hard");
    fs::create_symlink("a", m_folder / "link");
    const auto mount = "here=" + m_folder.path().string();
    for (const auto& target : {at("hard"), at("link"), std::string("java://here/a"), std::string("java://here/link")}) {
        EXPECT_THAT(jstore({"--mount", mount, "cp", "--replace", at("a"), target}),
                    FailsWith(4, AllOf(StartsWith("jstore: AlreadyExists: " + target), HasSubstr("the same file"))));
    }
    EXPECT_TRUE(fs::equivalent(m_folder / "a", m_folder / "hard"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ("content of a", contentOf(m_folder / "a"));
}

TEST_F(CpTest, WhatTheCommandItselfHasPutThereStays) {
    m_folder.file("x/f", "from x");
    m_folder.file("y/f", "from y");
    m_folder.file("z/g", "from z");
    m_folder.folder("to");
    fs::create_symlink("f", m_folder / "to/g");
    const auto outcome = jstore({"cp", "--replace", at("x/f"), at("y/f"), at("z/g"), at("to")});
    EXPECT_EQ(6, outcome.exitCode);
    ASSERT_EQ(2U, outcome.errLines().size()) << outcome.err;
    EXPECT_THAT(outcome.errLines()[0], AllOf(StartsWith("jstore: AlreadyExists: " + at("to/f")), HasSubstr("itself")));
    EXPECT_THAT(outcome.errLines()[1], AllOf(StartsWith("jstore: AlreadyExists: " + at("to/g")), HasSubstr("itself")));
    EXPECT_EQ("from x", contentOf(m_folder / "to/f"));
}

TEST_F(CpTest, JsonTellsDestinationAndBytes) {
    EXPECT_EQ(json({{"verb", "cp"}, {"location", at("a")}, {"destination", at("b")}, {"bytes", 12}, {"ok", true}}),
              objectsOf(jstore({"--json", "cp", at("a"), at("b")})).at(0));
}

class CpFolderTest : public CpTest {
protected:
    CpFolderTest() {
        m_folder.folder("d/e/empty");
        m_folder.file("d/one", "1");
        m_folder.file("d/e/two two", "22");
    }
};

TEST_F(CpFolderTest, FolderNeedsRecursive) {
    EXPECT_THAT(jstore({"cp", at("d"), at("f")}), FailsWith(1, AllOf(HasSubstr("NotAFile"), HasSubstr("cp -r"))));
    EXPECT_FALSE(fs::exists(m_folder / "f"));
}

TEST_F(CpFolderTest, FolderIsCopiedWithAllItHoldsAndItsTimes) {
    const auto time = longAgo();
    for (const auto* const name : {"d/e/two two", "d/e", "d"}) {
        fs::last_write_time(m_folder / name, time);
    }
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("f")}), IsSilentlyDone());
    EXPECT_EQ("1", contentOf(m_folder / "f/one"));
    EXPECT_EQ("22", contentOf(m_folder / "f/e/two two"));
    EXPECT_TRUE(fs::is_directory(m_folder / "f/e/empty"));
    for (const auto* const name : {"f/e/two two", "f/e", "f"}) {
        EXPECT_EQ(time, fs::last_write_time(m_folder / name)) << name;
    }
}

TEST_F(CpFolderTest, FolderGoesIntoAFolder) {
    m_folder.folder("into");
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("a"), at("into")}), IsSilentlyDone());
    EXPECT_EQ("1", contentOf(m_folder / "into/d/one"));
    EXPECT_EQ("content of a", contentOf(m_folder / "into/a"));
}

TEST_F(CpFolderTest, FolderAtTheTargetIsKeptOrAddedTo) {
    m_folder.folder("into/d/old");
    m_folder.file("into/d/one", "old one");
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("into")}), FailsWith(4, "jstore: AlreadyExists: " + at("into/d")));
    EXPECT_EQ("old one", contentOf(m_folder / "into/d/one"));
    EXPECT_THAT(jstore({"cp", "-r", "--replace", at("d"), at("into")}), IsSilentlyDone());
    EXPECT_EQ("1", contentOf(m_folder / "into/d/one"));
    EXPECT_TRUE(fs::is_directory(m_folder / "into/d/old"));
}

TEST_F(CpFolderTest, FolderGoesIntoAnArchiveAndBack) {
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto mount = "zip=jar:file://" + archive.string();
    EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", at("d"), "java://zip/"}), IsSilentlyDone());
    EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", "java://zip/d", at("f")}), IsSilentlyDone());
    EXPECT_EQ("22", contentOf(m_folder / "f/e/two two"));
    EXPECT_TRUE(fs::is_directory(m_folder / "f/e/empty"));
}

TEST_F(CpFolderTest, FolderDoesNotGoIntoItself) {
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("d/e")}), FailsWith(1, HasSubstr("InvalidLocation: " + at("d/e/d"))));
    EXPECT_FALSE(fs::exists(m_folder / "d/e/d"));
}

TEST_F(CpFolderTest, FolderDoesNotGoIntoItselfUnderAnotherName) {
    fs::create_directory_symlink("d", m_folder / "link");
    const auto mount = "here=" + (m_folder / "d").string();
    for (const auto& target : {at("link"), std::string("java://here/")}) {
        EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", at("d"), target}),
                    FailsWith(1, HasSubstr("a folder cannot be copied into itself")));
    }
    EXPECT_THAT(jstore({"cp", "-r", "--replace", at("d"), at("link")}), FailsWith(1, HasSubstr("InvalidLocation")));
    EXPECT_FALSE(fs::exists(m_folder / "d/d"));
}

TEST_F(CpFolderTest, FolderInTheSourceToWhichTheCopyGoesIsNotCopied) {
    fs::create_directory_symlink("d/e", m_folder / "link");
    const auto mount = "deep=" + (m_folder / "d/e").string();
    for (const auto& target : {at("link"), std::string("java://deep/")}) {
        EXPECT_THAT(jstore({"--mount", mount, "cp", "-r", at("d"), target}),
                    FailsWith(6, StartsWith("jstore: InvalidLocation: " + at("d/e/d"))));
        EXPECT_EQ("1", contentOf(m_folder / "d/e/d/one"));
        EXPECT_EQ("22", contentOf(m_folder / "d/e/d/e/two two"));
        EXPECT_FALSE(fs::exists(m_folder / "d/e/d/e/d"));
        fs::remove_all(m_folder / "d/e/d");
    }
}

TEST_F(CpFolderTest, NothingIsAddedToAFolderThroughALink) {
    m_folder.folder("outside");
    m_folder.folder("into/d");
    fs::create_directory_symlink(m_folder / "outside", m_folder / "into/d/e");
    EXPECT_THAT(jstore({"cp", "-r", "--replace", at("d"), at("into")}),
                FailsWith(6, AllOf(StartsWith("jstore: AlreadyExists: " + at("into/d/e")), HasSubstr("link"))));
    EXPECT_EQ("1", contentOf(m_folder / "into/d/one"));
    EXPECT_TRUE(fs::is_empty(m_folder / "outside"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "into/d/e"));
}

TEST_F(CpFolderTest, WhatTheCommandItselfHasPutThereStaysInFoldersToo) {
    m_folder.file("x/d/f", "from x");
    m_folder.file("x/d/e/deep", "from x");
    m_folder.file("y/d/f", "from y");
    m_folder.file("y/d/e/deep", "from y");
    m_folder.file("y/d/other", "other");
    m_folder.file("old/d/f", "old");
    for (const auto* const target : {"new", "old"}) {
        m_folder.folder(target);
        const auto outcome = jstore({"cp", "-r", "--replace", at("x/d"), at("y/d"), at(target)});
        EXPECT_EQ(6, outcome.exitCode);
        EXPECT_EQ(2U, outcome.errLines().size()) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr("AlreadyExists"));
        EXPECT_EQ("from x", contentOf(m_folder / target / "d/f"));
        EXPECT_EQ("from x", contentOf(m_folder / target / "d/e/deep"));
        EXPECT_EQ("other", contentOf(m_folder / target / "d/other"));
    }
}

TEST_F(CpFolderTest, FullStorageEndsTheCopy) {
    for (int i = 0; i < 20; ++i) {
        m_folder.file("d/file" + std::to_string(i));
    }
    const std::vector<std::string> full{"--class-path", JSTORE_TEST_BACKENDS,
                                        "--provider",   "com.corvallen.jstore.test.FaultyProvider",
                                        "--jvm-option", "-Djstore.test.fault=create"};
    const auto copy = [&](std::vector<std::string> words) {
        words.insert(words.begin(), full.begin(), full.end());
        return jstore(words);
    };
    EXPECT_THAT(copy({"cp", "-r", at("d"), at("f")}),
                FailsWith(1, ::testing::MatchesRegex("jstore: StorageFull: .*; 0 copied until then")));
    EXPECT_THAT(copy({"cp", at("a"), at("d/file1"), at("d/e")}),
                FailsWith(1, ::testing::MatchesRegex("jstore: StorageFull: .*; 0 copied until then")));
}

TEST_F(CpFolderTest, LinksToFoldersAreToldAndTheRestIsCopied) {
    fs::create_directory_symlink("..", m_folder / "d/e/up");
    fs::create_symlink("one", m_folder / "d/link");
    EXPECT_THAT(jstore({"cp", "-r", at("d"), at("f")}), FailsWith(6, HasSubstr("NotSupported: " + at("d/e/up"))));
    EXPECT_EQ("22", contentOf(m_folder / "f/e/two two"));
    EXPECT_EQ("1", contentOf(m_folder / "f/link"));
    EXPECT_FALSE(fs::exists(m_folder / "f/e/up"));
}

/// A copy that takes long: of a file of zeros that takes no room itself.
class CpInterruptTest : public CpTest {
protected:
    CpInterruptTest() {
        m_folder.folder("from");
        m_folder.file("huge", "begins with bytes, which arrive");
        fs::resize_file(m_folder / "huge", std::uintmax_t{64} << 30);
        m_folder.folder("to");
    }

    /// Whether bytes of the huge file have arrived in the folder to which the copy goes: more than a small one has.
    [[nodiscard]] bool hasBegun() const {
        for (const auto& file : fs::recursive_directory_iterator(m_folder / "to")) {
            std::error_code gone;
            const auto size = fs::file_size(file, gone);
            if (!gone && size > std::string_view("whole").size() && file.path().filename() != "old") {
                return true;
            }
        }
        return false;
    }

    /// Starts the copy, interrupts it when bytes have arrived, and waits for its end.
    Outcome interruptedCopy(std::string_view source, std::string_view target) {
        Jstore run({"cp", "-r", "--replace", at(source), at(target)});
        run.start();
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (!hasBegun()) {
            if (std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "the copy did not begin";
                break;
            }
            std::this_thread::yield();
        }
        ::kill(run.pid(), SIGINT);
        return run.wait();
    }
};

TEST_F(CpInterruptTest, NothingIsLeftOfTheTarget) {
    const auto outcome = interruptedCopy("huge", "to/new");
    EXPECT_THAT(outcome, FailsWith(130, "jstore: interrupted: 0 copied"));
    EXPECT_TRUE(fs::is_empty(m_folder / "to"));
}

TEST_F(CpInterruptTest, FolderHoldsWholeFilesAlone) {
    m_folder.file("from/a", "whole");
    fs::rename(m_folder / "huge", m_folder / "from/huge");
    m_folder.file("from/z");
    EXPECT_THAT(interruptedCopy("from", "to"), FailsWith(130, "jstore: interrupted: 1 copied, 5"));
    EXPECT_EQ("whole", contentOf(m_folder / "to/from/a"));
    EXPECT_EQ(1, std::distance(fs::directory_iterator(m_folder / "to/from"), fs::directory_iterator()));
}

TEST_F(CpInterruptTest, OldContentStays) {
    m_folder.file("to/old", "old content");
    EXPECT_EQ(130, interruptedCopy("huge", "to/old").exitCode);
    EXPECT_EQ("old content", contentOf(m_folder / "to/old"));
    EXPECT_EQ(1, std::distance(fs::directory_iterator(m_folder / "to"), fs::directory_iterator()));
}

}  // namespace

}  // namespace jstore::test
