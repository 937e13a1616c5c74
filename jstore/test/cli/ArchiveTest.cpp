#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "support/Jstore.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

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
        const auto start = "exec '" + (m_root / "bin/jstore").string() + "' \"$@\"";
        return Jstore(std::move(arguments)).through({"/bin/sh", "-c", start}).run();
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
    EXPECT_THAT(installed({"doctor", "--make-archive"}),
                Prints(ContainsRegex("ok +archive +.*jsa: made, [0-9]+ KiB\n")));
    EXPECT_EQ(1U, archives().size()) << "nothing else is left in the folder";
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("ok +archive +.*jsa: used\n")));
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
}

TEST_F(ArchiveTest, IsReplaced) {
    ASSERT_EQ(0, installed({"doctor", "--make-archive"}).exitCode);
    EXPECT_THAT(installed({"doctor", "--make-archive"}), Prints(HasSubstr(": made, ")));
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("ok +archive +.*: used\n")));
}

TEST_F(ArchiveTest, IsPassedOverInSilenceWhenTheJarsAreOthers) {
    ASSERT_EQ(0, installed({"doctor", "--make-archive"}).exitCode);
    const auto jar = m_root / "share/java/storage-backends.jar";
    fs::last_write_time(jar, fs::last_write_time(jar) - std::chrono::hours(1));
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"doctor"}),
                Prints(ContainsRegex("warn +archive +.*: not used: Java, its options or the jars")));
}

TEST_F(ArchiveTest, IsPassedOverInSilenceWhenItIsDamaged) {
    ASSERT_EQ(0, installed({"doctor", "--make-archive"}).exitCode);
    const auto archive = archives().front();
    fs::remove(archive);
    std::ofstream(archive) << "no archive";
    EXPECT_THAT(installed({"ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("warn +archive +.*: not used")));
    EXPECT_THAT(installed({"doctor", "--make-archive"}), Prints(HasSubstr(": made, ")));
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("ok +archive +.*: used\n")));
}

TEST_F(ArchiveTest, IsLeftOutWithAClassPath) {
    ASSERT_EQ(0, installed({"doctor", "--make-archive"}).exitCode);
    const auto path = m_listed.path().string();
    EXPECT_THAT(installed({"--class-path", path, "ls", location()}), Prints("document.txt\n"));
    EXPECT_THAT(installed({"--class-path", path, "doctor"}),
                Prints(ContainsRegex("ok +archive +not used with --class-path or JSTORE_CLASS_PATH\n")));
    EXPECT_THAT(installed({"--class-path", path, "--jvm-option", "-Xshare:on", "ls", location()}),
                Prints("document.txt\n"))
        << "whoever insists on Java's own archive gets it";
}

TEST_F(ArchiveTest, UsersArchiveWins) {
    ASSERT_EQ(0, installed({"doctor", "--make-archive"}).exitCode);
    EXPECT_THAT(installed({"--jvm-option", "-XX:SharedArchiveFile=/nonexistent", "doctor"}),
                Prints(ContainsRegex("warn +archive +.*: not used")));
}

TEST_F(ArchiveTest, IsOfTheInstallationsClassesAlone) {
    EXPECT_THAT(installed({"--class-path", "/tmp", "doctor", "--make-archive"}),
                FailsWith(2, HasSubstr("--make-archive is for jstore's own classes")));
    EXPECT_TRUE(archives().empty());
}

TEST_F(ArchiveTest, NeedsAFolderInTheInstallation) {
    m_root.file("lib", "no folder");
    const auto outcome = installed({"doctor", "--make-archive"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_EQ("", outcome.err);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +.*/lib/jstore: Not a directory\n.*-> whoever may write"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("java version"))) << "Java is not even started";
}

TEST_F(ArchiveTest, FailureLeavesTheOldOne) {
    ASSERT_EQ(0, installed({"doctor", "--make-archive"}).exitCode);
    const auto outcome = installed({"--provider", "com.example.Nope", "doctor", "--make-archive"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +.*cannot use provider com.example.Nope"));
    EXPECT_EQ(1U, archives().size());
    EXPECT_THAT(installed({"doctor"}), Prints(ContainsRegex("ok +archive +.*: used\n")));
}

TEST_F(ArchiveTest, NeedsTheVersionOfJava) {
    const auto doctor = jstore({"doctor"});
    const auto start = doctor.out.find("libjvm        ") + 14;
    const fs::path libjvm = doctor.out.substr(start, doctor.out.find('\n', start) - start);
    // The same Java, in a home without the file that states the version.
    fs::create_symlink(libjvm.parent_path().parent_path(), m_listed / "lib");
    EXPECT_THAT(installed({"--java-home", location(), "doctor"}), Prints(ContainsRegex("ok +archive +none, since ")));
    const auto outcome = installed({"--java-home", location(), "doctor", "--make-archive"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +none, since .*states no version\n.*-> name another Java"));
}

}  // namespace

}  // namespace jstore::test
