#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/Jstore.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;

namespace {

const auto Uses = ContainsRegex("ok +archive +.*/classes-[0-9.]+.jsa: used\n");

/// An installation of its own, without a class archive: the program and its jars.
class ArchiveTest : public ::testing::Test {
protected:
    ArchiveTest() {
        const fs::path program = JSTORE_PROGRAM;
        const auto root = program.parent_path().parent_path();
        fs::create_directory(m_root / "bin");
        fs::create_directory(m_root / "share");
        fs::copy(program, m_root / "bin/jstore");
        fs::copy(root / "share/java", m_root / "share/java", fs::copy_options::recursive);
        m_listed.file("document.txt");
    }

    /// What the copied program does.
    [[nodiscard]] Outcome installed(std::vector<std::string> arguments) const {
        return through("", std::move(arguments));
    }
    /// The same after words of a shell.
    [[nodiscard]] Outcome through(const std::string& before, std::vector<std::string> arguments) const {
        return Jstore(std::move(arguments)).through(programIn(m_root, before)).run();
    }
    /// What has the program of an installation run in the original's place.
    [[nodiscard]] static std::vector<std::string> programIn(const TemporaryFolder& root,
                                                            const std::string& before = "") {
        return {"/bin/sh", "-c", before + "exec '" + (root / "bin/jstore").string() + "' \"$@\""};
    }
    Outcome make() const { return installed({"doctor", "--make-archive"}); }

    /// Makes the folder of the location the home of the same Java as ever, without the file that states the version.
    void homeOfTheSameJava() const {
        const auto doctor = jstore({"doctor"}).out;
        const std::string key = "libjvm        ";
        const auto start = doctor.find(key) + key.size();
        const fs::path libjvm = doctor.substr(start, doctor.find('\n', start) - start);
        fs::create_symlink(libjvm.parent_path().parent_path(), m_listed / "lib");
    }

    [[nodiscard]] fs::path folder() const { return m_root / "lib/jstore"; }
    [[nodiscard]] std::string location() const { return m_listed.path().string(); }

    [[nodiscard]] std::vector<fs::path> archives() const {
        return fs::exists(folder()) ? std::vector<fs::path>(fs::directory_iterator(folder()), {})
                                    : std::vector<fs::path>();
    }

    TemporaryFolder m_root;
    TemporaryFolder m_listed;
};

TEST_F(ArchiveTest, IsMadeAndUsed) {
    EXPECT_THAT(installed({"doctor"}),
                Prints(AllOf(ContainsRegex("warn +archive +.*/lib/jstore/classes-[0-9.]+.jsa: not there"),
                             HasSubstr("-> commands start faster after jstore doctor --make-archive"))));
    EXPECT_THAT(make(), Prints(AllOf(ContainsRegex("ok +archive +.*jsa: made, [0-9]+ KiB\n"), Uses)));
    EXPECT_EQ(1U, archives().size()) << "nothing else is left in the folder";
    EXPECT_THAT(installed({"doctor"}), Prints(Uses));
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
}

TEST_F(ArchiveTest, IsReplaced) {
    make();
    std::ofstream(archives().front().string() + ".tmp") << "what a killed maker has left";
    EXPECT_THAT(make(), Prints(AllOf(HasSubstr(": made, "), Uses)));
    EXPECT_EQ(1U, archives().size());
}

TEST_F(ArchiveTest, IsForEveryone) {
    EXPECT_EQ(0, through("umask 077; ", {"doctor", "--make-archive"}).exitCode);
    EXPECT_EQ(fs::perms(0644), fs::status(archives().front()).permissions());
}

TEST_F(ArchiveTest, FolderMayBeALink) {
    fs::create_directory(m_root / "lib");
    fs::create_directory(m_root / "elsewhere");
    fs::create_directory_symlink(m_root / "elsewhere", folder());
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, IsPassedOverInSilenceWhenTheJarsAreOthers) {
    make();
    const auto jar = m_root / "share/java/storage-backends.jar";
    fs::last_write_time(jar, fs::last_write_time(jar) - std::chrono::hours(1));
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"doctor"}),
                Prints(ContainsRegex("warn +archive +.*: not used: Java, its options or the jars")));
}

TEST_F(ArchiveTest, IsPassedOverInSilenceWhereTheInstallationWasMoved) {
    make();
    const TemporaryFolder elsewhere;
    fs::copy(m_root.path(), elsewhere.path(), fs::copy_options::recursive);
    EXPECT_THAT(Jstore({"ls", location()}).through(programIn(elsewhere)).run(), Prints("document.txt\n"));
    EXPECT_THAT(Jstore({"doctor"}).through(programIn(elsewhere)).run(),
                Prints(ContainsRegex("warn +archive +.*: not used: Java, its options or the jars")));
}

TEST_F(ArchiveTest, WhatIsNoArchiveIsPassedOverInSilence) {
    make();
    const auto archive = archives().front();
    fs::remove(archive);
    std::ofstream(archive) << "no archive";
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("warn +archive +.*: not used")));
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, DamagedOneIsPassedOver) {
    make();
    const auto archive = archives().front();
    const auto whole = contentOf(archive);
    for (const auto place : {whole.size() / 4, whole.size() / 2, whole.size() - 100}) {
        auto damaged = whole;
        damaged.replace(place, 64, 64, '\x5a');
        std::ofstream(archive, std::ios::binary) << damaged;
        EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n")) << "damaged at " << place;
    }
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("warn +archive +.*: not used: it is damaged")));
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, OneThatHasLostItsEndIsPassedOver) {
    make();
    const auto archive = archives().front();
    for (const std::uintmax_t divisor : {2UL, 20UL}) {
        fs::resize_file(archive, fs::file_size(archive) / divisor);
        EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    }
    EXPECT_THAT(make(), Prints(Uses));
}

TEST_F(ArchiveTest, PipeInItsPlaceIsPassedOver) {
    make();
    const auto archive = archives().front();
    fs::remove(archive);
    ASSERT_EQ(0, ::mkfifo(archive.c_str(), 0600));
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
}

/// Where an option stands that has Java write an archive in place of a command.
struct DumpCase {
    const char* variable;
    std::string value;
};

TEST_F(ArchiveTest, IsNotOverwrittenByAnOptionOfTheEnvironment) {
    make();
    const auto archive = archives().front();
    const auto before = contentOf(archive);
    const auto file = m_listed.file("options", "-Xshare:dump").string();
    const std::vector<DumpCase> cases{{"JAVA_TOOL_OPTIONS", "-Xshare:dump"},
                                      {"_JAVA_OPTIONS", "-Xshare:dump"},
                                      {"JAVA_TOOL_OPTIONS", "-XX:+DumpSharedSpaces"},
                                      {"_JAVA_OPTIONS", "-XX:VMOptionsFile=" + file},
                                      {"_JAVA_OPTIONS", "-XX:ArchiveClassesAtExit=" + archive.string()}};
    for (const auto& [variable, value] : cases) {
        const auto outcome = Jstore({"ls", location()}).through(programIn(m_root)).with(variable, value).run();
        EXPECT_THAT(outcome,
                    FailsWith(1, AllOf(HasSubstr("Java does not start: "), HasSubstr(variable), HasSubstr("archive"))))
            << value;
        EXPECT_EQ(before, contentOf(archive)) << value;
    }
    EXPECT_THAT(installed({"--jvm-option", "-Xshare:dump", "ls", location()}), FailsWith(1, HasSubstr("archive")));
    EXPECT_EQ(before, contentOf(archive));
}

TEST_F(ArchiveTest, IsLeftOutWithAClassPath) {
    make();
    EXPECT_THAT(installed({"--class-path", location(), "ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"--class-path", location(), "doctor"}),
                Prints(ContainsRegex("ok +archive +not used with --class-path or JSTORE_CLASS_PATH\n")));
    EXPECT_THAT(installed({"--class-path", location(), "--jvm-option", "-Xshare:on", "ls", location()}),
                Prints("document.txt\n"))
        << "whoever insists on Java's own archive gets it";
}

TEST_F(ArchiveTest, UsersArchivesWin) {
    make();
    EXPECT_THAT(installed({"--jvm-option", "-XX:SharedArchiveFile=/nonexistent", "doctor"}),
                Prints(ContainsRegex("warn +archive +.*: not used")));
    const auto own = "-XX:ArchiveClassesAtExit=" + (m_listed / "own.jsa").string();
    EXPECT_THAT(installed({"--jvm-option", own, "ls", location()}), Prints("document.txt\n"));
}

TEST_F(ArchiveTest, IsForCommandsWithoutOptionsAboutJava) {
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--class-path", "/tmp"}, {"--jvm-option", "-XX:+UseZGC"}}) {
        auto arguments = options;
        arguments.insert(arguments.end(), {"doctor", "--make-archive"});
        EXPECT_THAT(installed(arguments), FailsWith(2, HasSubstr("--make-archive goes without ")));
    }
    EXPECT_TRUE(archives().empty());
}

TEST_F(ArchiveTest, NeedsAFolderInTheInstallation) {
    m_root.file("lib", "no folder");
    const auto outcome = make();
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_EQ("", outcome.err);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +.*/lib/jstore/classes.*: not made: .*Not a directory.*\n"
                                           ".*-> whoever may write into the installation"));
}

TEST_F(ArchiveTest, FailureOfTheBackEndLeavesTheOldOne) {
    make();
    const auto outcome = installed({"--provider", "com.example.Nope", "doctor", "--make-archive"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +.*: not made: .*cannot use provider com.example.Nope"));
    EXPECT_EQ(1U, archives().size());
    EXPECT_THAT(installed({"doctor"}), Prints(Uses));
}

TEST_F(ArchiveTest, FullDiskLeavesTheOldOne) {
    make();
    const auto outcome = through("ulimit -f 200; export LLVM_PROFILE_FILE=/dev/null; ", {"doctor", "--make-archive"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.out, AllOf(ContainsRegex("FAIL +archive +.*: not made: "), Uses));
    EXPECT_EQ(1U, archives().size());
}

/// Another maker is at it, and takes its time.
class BusyArchiveTest : public ArchiveTest {
protected:
    BusyArchiveTest() {
        fs::create_directories(folder());
        m_other = ::open(folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        EXPECT_EQ(0, ::flock(m_other, LOCK_EX));
        m_maker.through(programIn(m_root)).start();
        EXPECT_TRUE(m_maker.readUntil(
            [](const Outcome& soFar) { return soFar.out.find("NioProvider in ") != std::string::npos; }));
    }
    ~BusyArchiveTest() override { otherEnds(); }

    void otherEnds() {
        if (m_other >= 0) {
            ::close(m_other);
            m_other = -1;
        }
    }

    Jstore m_maker{{"doctor", "--make-archive"}};

private:
    int m_other = -1;
};

TEST_F(BusyArchiveTest, MakersWaitForEachOther) {
    const auto isMade = [](const Outcome& soFar) { return soFar.out.find(": made, ") != std::string::npos; };
    EXPECT_FALSE(m_maker.readUntil(isMade, std::chrono::seconds(2)));
    EXPECT_TRUE(archives().empty());
    otherEnds();
    EXPECT_THAT(m_maker.wait(), Prints(AllOf(HasSubstr(": made, "), Uses)));
}

TEST_F(BusyArchiveTest, InterruptMakesNone) {
    ASSERT_EQ(0, ::kill(m_maker.pid(), SIGINT));
    otherEnds();
    const auto outcome = m_maker.wait();
    EXPECT_EQ(130, outcome.exitCode);
    EXPECT_EQ("jstore: interrupted\n", outcome.err);
    EXPECT_TRUE(archives().empty());
}

TEST_F(ArchiveTest, NeedsTheVersionOfJava) {
    homeOfTheSameJava();
    EXPECT_THAT(installed({"--java-home", location(), "doctor"}), Prints(ContainsRegex("ok +archive +none, since ")));
    const auto outcome = installed({"--java-home", location(), "doctor", "--make-archive"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.out,
                ContainsRegex("FAIL +archive +none, since .*states no version\n.*-> name Java 13 or newer"));
}

TEST_F(ArchiveTest, NeedsJava13) {
    homeOfTheSameJava();
    m_listed.file("release", "JAVA_VERSION=\"12.0.2\"\n");
    const auto outcome = installed({"--java-home", location(), "doctor", "--make-archive"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +Java 12.0.2 cannot make one\n.*-> name Java 13 or newer"));
}

}  // namespace

}  // namespace jstore::test
