#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "ArchiveTest.h"
#include "support/Matchers.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;

namespace {

/// Makers that are refused, fail, or meet each other.
class ArchiveMakingTest : public ArchiveTest {
protected:
    /// Makes the folder of the location the home of the same Java as ever, without the file that states the version.
    void homeOfTheSameJava() const {
        const auto doctor = jstore({"doctor"}).out;
        const std::string key = "libjvm        ";
        const auto start = doctor.find(key) + key.size();
        const fs::path libjvm = doctor.substr(start, doctor.find('\n', start) - start);
        fs::create_symlink(libjvm.parent_path().parent_path(), m_listed / "lib");
    }
};

TEST_F(ArchiveMakingTest, IsForCommandsWithoutOptionsAboutJava) {
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--class-path", "/tmp"}, {"--jvm-option", "-XX:+UseZGC"}}) {
        auto arguments = options;
        arguments.insert(arguments.end(), {"doctor", "--make-archive"});
        EXPECT_THAT(installed(arguments), FailsWith(2, HasSubstr("--make-archive cannot be used with ")));
    }
    EXPECT_TRUE(archives().empty());
}

TEST_F(ArchiveMakingTest, NeedsAFolderInTheInstallation) {
    m_root.file("lib", "no folder");
    const auto outcome = make();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +.*/lib/jstore/classes.*: not made: .*Not a directory.*\n"
                                           ".*-> run --make-archive as a user who may write to the installation"));
}

TEST_F(ArchiveMakingTest, FailureOfTheBackEndLeavesTheOldOne) {
    make();
    const auto outcome = installed({"--provider", "com.example.Nope", "doctor", "--make-archive"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +.*: not made: .*cannot use provider com.example.Nope"));
    EXPECT_EQ(archives().size(), 1U);
    EXPECT_THAT(installed({"doctor"}), Prints(Uses));
}

TEST_F(ArchiveMakingTest, FullDiskLeavesTheOldOne) {
    make();
    const auto outcome = through("ulimit -f 200; export LLVM_PROFILE_FILE=/dev/null; ", {"doctor", "--make-archive"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, AllOf(ContainsRegex("FAIL +archive +.*: not made: "), Uses));
    EXPECT_EQ(archives().size(), 1U);
}

TEST_F(ArchiveMakingTest, NeedsTheVersionOfJava) {
    homeOfTheSameJava();
    EXPECT_THAT(installed({"--java-home", location(), "doctor"}), Prints(ContainsRegex("ok +archive +none: ")));
    const auto outcome = installed({"--java-home", location(), "doctor", "--make-archive"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL +archive +none: .*states no version\n.*-> use Java 13 or newer"));
}

TEST_F(ArchiveMakingTest, NeedsJava13) {
    homeOfTheSameJava();
    m_listed.file("release", "JAVA_VERSION=\"12.0.2\"\n");
    const auto outcome = installed({"--java-home", location(), "doctor", "--make-archive"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out,
                ContainsRegex("FAIL +archive +Java 12.0.2 cannot make a class archive\n.*-> use Java 13 or newer"));
}

/// Another maker is at it, and takes its time.
class BusyArchiveTest : public ArchiveTest {
protected:
    BusyArchiveTest() {
        fs::create_directories(folder());
        m_other = ::open(folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        EXPECT_EQ(::flock(m_other, LOCK_EX), 0);
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
    ASSERT_EQ(::kill(m_maker.pid(), SIGINT), 0);
    otherEnds();
    const auto outcome = m_maker.wait();
    EXPECT_EQ(outcome.exitCode, 130);
    EXPECT_EQ(outcome.err, "jstore: interrupted\n");
    EXPECT_TRUE(archives().empty());
}

}  // namespace

}  // namespace jstore::test
