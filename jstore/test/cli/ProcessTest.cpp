#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <thread>

#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::HasSubstr;

namespace {

TEST(OutputTest, ReaderThatHasGoneEndsLikeOtherPrograms) {
    EXPECT_EQ(Jstore({"exists", "/"}).outputTo(Jstore::Output::ReaderGone).run().signal, SIGPIPE);
    EXPECT_EQ(Jstore({"--help"}).outputTo(Jstore::Output::ReaderGone).run().signal, SIGPIPE);
}

TEST(OutputTest, ClosedOutputMattersOnlyToWhatPrints) {
    const TemporaryFolder folder;
    EXPECT_THAT(Jstore({"touch", folder.location("x")}).outputTo(Jstore::Output::Closed).run(), IsSilentlyDone());
    EXPECT_THAT(Jstore({"exists", "/"}).outputTo(Jstore::Output::Closed).run(),
                FailsWith(1, "jstore: standard output: Bad file descriptor"));
}

TEST(OutputTest, FullOutputIsTold) {
    EXPECT_THAT(Jstore({"exists", "/"}).outputTo(Jstore::Output::Full).run(),
                FailsWith(1, "jstore: standard output: No space left on device"));
}

/// Polls until the condition holds; false after a minute.
template <class Condition>
bool waitUntil(const Condition& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

/// The signals that /proc shows of a process in the line that begins so.
unsigned long long signalsOf(pid_t pid, std::string_view which) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(which)) {
            return std::stoull(line.substr(which.size()), nullptr, 16);
        }
    }
    return 0;
}

bool catches(pid_t pid, int signal) { return (signalsOf(pid, "SigCgt:") >> (signal - 1) & 1U) != 0; }
bool ignores(pid_t pid, int signal) { return (signalsOf(pid, "SigIgn:") >> (signal - 1) & 1U) != 0; }

/// Sends the signal and returns once jstore's handler, which works once for all of them, has run.
void interrupt(pid_t pid, int signal = SIGINT) {
    ASSERT_TRUE(catches(pid, signal));
    ASSERT_EQ(::kill(pid, signal), 0);
    ASSERT_TRUE(waitUntil([&] { return !catches(pid, SIGINT) && !catches(pid, SIGTERM) && !catches(pid, SIGHUP); }));
}

/// A named pipe at which a jstore stands inside an operation of a back end until it is opened.
class GateTest : public ::testing::Test {
protected:
    GateTest() {
        if (::mkfifo(m_gate.c_str(), 0600) != 0) {
            throw std::runtime_error("no named pipe");
        }
    }
    ~GateTest() override { open(); }

    /// Returns once jstore has come to the gate.
    void waitForGate() {
        ASSERT_TRUE(waitUntil([this] {
            // Opening to write fails as long as nobody has the pipe open for reading.
            m_writer = ::open(m_gate.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            return m_writer >= 0;
        }));
    }

    void open() {
        if (m_writer >= 0) {
            ::close(m_writer);
            m_writer = -1;
        }
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_gate = m_folder / "gate";

private:
    int m_writer = -1;
};

/// A jstore of which the first operation is under way.
class InterruptTest : public GateTest {
protected:
    void startAndWait() {
        m_run.start();
        waitForGate();
    }

    Jstore m_run{{"--json", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                  "com.corvallen.jstore.test.BlockingProvider", "--jvm-option", "-Djstore.test.gate=" + m_gate.string(),
                  "mkdir", "java:///one", "java:///two"}};
};

/// A signal that stops jstore, and how it ends then.
struct Ending {
    int signal;
    int exitCode;
};

void PrintTo(const Ending& ending, std::ostream* out) { *out << ::strsignal(ending.signal); }

class EndingTest : public InterruptTest, public ::testing::WithParamInterface<Ending> {};

TEST_P(EndingTest, OperationUnderWayIsFinishedAndTheNextNotBegun) {
    startAndWait();
    interrupt(m_run.pid(), GetParam().signal);
    open();
    const auto outcome = m_run.wait();
    EXPECT_EQ(outcome.exitCode, GetParam().exitCode);
    ASSERT_EQ(outcome.outLines().size(), 2U);
    EXPECT_THAT(outcome.outLines()[0], HasSubstr(R"("java:///one","ok":true)"));
    EXPECT_EQ(outcome.outLines()[1],
              R"({"verb":"mkdir","ok":false,"error":{"code":"Interrupted","message":"interrupted: 1 done"}})");
    EXPECT_EQ(outcome.err, "jstore: interrupted: 1 done\n");
}

TEST_P(EndingTest, SecondSignalEndsAtOnce) {
    startAndWait();
    interrupt(m_run.pid());
    ASSERT_EQ(::kill(m_run.pid(), GetParam().signal), 0);
    EXPECT_EQ(m_run.wait().signal, GetParam().signal);
}

TEST_P(EndingTest, IgnoredSignalStaysIgnored) {
    const int signal = GetParam().signal;
    auto* const before = std::signal(signal, SIG_IGN);
    startAndWait();
    std::signal(signal, before);
    EXPECT_TRUE(ignores(m_run.pid(), signal));
    EXPECT_FALSE(catches(m_run.pid(), signal));
}

INSTANTIATE_TEST_SUITE_P(Signals, EndingTest,
                         ::testing::Values(Ending{SIGINT, 130}, Ending{SIGTERM, 143}, Ending{SIGHUP, 129}));

/// Whether the process has ended; nothing that it wrote is read.
bool hasEnded(pid_t pid) {
    siginfo_t info{};
    return ::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0;
}

TEST(OutputTest, SignalEndsACommandWhoseOutputNobodyTakes) {
    const TemporaryFolder folder;
    std::filesystem::resize_file(folder.file("huge"), std::uintmax_t{64} << 30);
    for (const auto* const option : {"--no-progress", "--json"}) {
        Jstore run({option, "cat", folder.location("huge")});
        run.start();
        ASSERT_TRUE(run.readUntil([](const Outcome& outcome) { return !outcome.out.empty(); }));
        ASSERT_EQ(::kill(run.pid(), SIGTERM), 0);
        EXPECT_TRUE(waitUntil([&] { return hasEnded(run.pid()); })) << option;
        EXPECT_EQ(run.wait().exitCode, 143);
    }
}

/// Verbs in the midst of a folder or a file.
class LongCommandTest : public GateTest {
protected:
    /// Starts jstore on the storage whose parts wait at the gate, and returns when it has come there.
    void startGated(const std::vector<std::string>& command, const std::vector<std::string>& options = {}) {
        std::vector<std::string> words{"--class-path", JSTORE_TEST_BACKENDS,
                                       "--provider",   "com.corvallen.jstore.test.GatedProvider",
                                       "--jvm-option", "-Djstore.test.gate=" + m_gate.string()};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), command.begin(), command.end());
        m_run = std::make_unique<Jstore>(words);
        m_run->start();
        waitForGate();
    }

    std::unique_ptr<Jstore> m_run;
};

const std::vector<std::string> Waits{"--jvm-option", "-Djstore.test.waits=1"};

TEST_F(LongCommandTest, RemovalOfAFolderStopsBetweenTwoFiles) {
    for (int i = 0; i < 100; ++i) {
        m_folder.file("d/e" + std::to_string(i % 10) + "/file" + std::to_string(i));
    }
    m_folder.file("d/only/gated");
    startGated({"rm", "-r", m_folder.location("d/only"), m_folder.location("d")});
    interrupt(m_run->pid());
    open();
    EXPECT_THAT(m_run->wait(), FailsWith(130, "jstore: interrupted: 1 removed"));
    EXPECT_TRUE(std::filesystem::is_empty(m_folder / "d/only"));
    EXPECT_TRUE(std::filesystem::exists(m_folder / "d/e0/file0"));
}

TEST_F(LongCommandTest, WhatOthersRemoveDuringARemovalIsFine) {
    m_folder.file("d/e/gated");
    m_folder.file("d/file");
    startGated({"rm", "-r", m_folder.location("d")});
    std::filesystem::remove_all(m_folder / "d/e");
    open();
    EXPECT_THAT(m_run->wait(), IsSilentlyDone());
    EXPECT_FALSE(std::filesystem::exists(m_folder / "d"));
}

TEST_F(LongCommandTest, FolderThatOthersRemoveDuringItsRemovalIsFine) {
    m_folder.file("d/e/gated");
    startGated({"rm", "-r", m_folder.location("d")});
    std::filesystem::remove_all(m_folder / "d");
    open();
    EXPECT_THAT(m_run->wait(), IsSilentlyDone());
}

/// The folder is swapped at some moment of its removal, since a folder lists its entries in no order.
TEST_F(LongCommandTest, RemovalDoesNotGoOnThroughALinkInAFoldersPlace) {
    constexpr std::ptrdiff_t files = 500;
    for (std::ptrdiff_t i = 0; i < files; ++i) {
        m_folder.file("d/e/" + std::to_string(i));
        m_folder.file("other/" + std::to_string(i));
    }
    m_folder.file("d/e/gated");
    m_folder.file("other/gated");
    startGated({"rm", "-r", m_folder.location("d")});
    std::filesystem::rename(m_folder / "d/e", m_folder / "away");
    std::filesystem::create_directory_symlink(m_folder / "other", m_folder / "d/e");
    const auto count = [&](const char* folder) {
        return std::distance(std::filesystem::directory_iterator(m_folder / folder), {});
    };
    const auto unremoved = count("away");
    open();
    const auto outcome = m_run->wait();
    EXPECT_GE(count("other"), files - 32);
    if (unremoved > 64) {
        EXPECT_THAT(outcome, FailsWith(6, "jstore: InUse: " + m_folder.location("d/e") +
                                              ": something else took its place during the removal"));
    }
}

TEST_F(LongCommandTest, RemovalAtOnceIsInterruptedInJava) {
    m_folder.file("huge/file");
    startGated({"rm", "-r", m_folder.location("huge"), m_folder.location("none")}, Waits);
    open();
    interrupt(m_run->pid(), SIGTERM);
    EXPECT_THAT(m_run->wait(), FailsWith(143, "jstore: interrupted: 0 removed"));
}

TEST_F(LongCommandTest, MoveOfAFolderIsInterruptedInJava) {
    m_folder.folder("d");
    startGated({"mv", m_folder.location("d"), m_folder.location("e")}, Waits);
    open();
    interrupt(m_run->pid(), SIGHUP);
    EXPECT_THAT(m_run->wait(), FailsWith(129, "jstore: interrupted: 0 moved"));
    EXPECT_TRUE(std::filesystem::exists(m_folder / "d"));
}

}  // namespace

}  // namespace jstore::test
