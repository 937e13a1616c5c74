#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::HasSubstr;

namespace {

TEST(OutputTest, ReaderThatHasGoneEndsLikeOtherPrograms) {
    EXPECT_EQ(SIGPIPE, Jstore({"exists", "/"}).outputTo(Jstore::Output::ReaderGone).run().signal);
    EXPECT_EQ(SIGPIPE, Jstore({"--help"}).outputTo(Jstore::Output::ReaderGone).run().signal);
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

/// A jstore that is inside an operation of a back end until the gate is opened.
class InterruptTest : public ::testing::Test {
protected:
    InterruptTest() {
        if (::mkfifo(m_gate.c_str(), 0600) != 0) {
            throw std::runtime_error("no named pipe");
        }
    }
    ~InterruptTest() override { open(); }

    /// Returns once the first operation is under way.
    void startAndWait() {
        m_run.start();
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

    /// Sends SIGINT and returns once jstore's handler, which works once, has run.
    void interrupt() const {
        ASSERT_TRUE(catchesInterrupt());
        ASSERT_EQ(0, ::kill(m_run.pid(), SIGINT));
        ASSERT_TRUE(waitUntil([this] { return !catchesInterrupt(); }));
    }

    [[nodiscard]] bool catchesInterrupt() const { return (signals("SigCgt:") >> (SIGINT - 1) & 1U) != 0; }
    [[nodiscard]] bool ignoresInterrupt() const { return (signals("SigIgn:") >> (SIGINT - 1) & 1U) != 0; }

    [[nodiscard]] unsigned long long signals(std::string_view which) const {
        std::ifstream status("/proc/" + std::to_string(m_run.pid()) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with(which)) {
                return std::stoull(line.substr(which.size()), nullptr, 16);
            }
        }
        return 0;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_gate = m_folder / "gate";
    int m_writer = -1;
    Jstore m_run{{"--json", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                  "com.corvallen.jstore.test.BlockingProvider", "--jvm-option", "-Djstore.test.gate=" + m_gate.string(),
                  "mkdir", "java:///one", "java:///two"}};
};

TEST_F(InterruptTest, OperationUnderWayIsFinishedAndTheNextNotBegun) {
    startAndWait();
    interrupt();
    open();
    const auto outcome = m_run.wait();
    EXPECT_EQ(130, outcome.exitCode);
    EXPECT_THAT(outcome.out, HasSubstr(R"("java:///one","ok":true)"));
    EXPECT_EQ(1U, outcome.outLines().size());
    EXPECT_EQ("", outcome.err);
}

TEST_F(InterruptTest, SecondInterruptEndsAtOnce) {
    startAndWait();
    interrupt();
    ASSERT_EQ(0, ::kill(m_run.pid(), SIGINT));
    EXPECT_EQ(SIGINT, m_run.wait().signal);
}

TEST_F(InterruptTest, TerminationEndsAtOnce) {
    startAndWait();
    ASSERT_EQ(0, ::kill(m_run.pid(), SIGTERM));
    EXPECT_EQ(SIGTERM, m_run.wait().signal);
}

TEST_F(InterruptTest, IgnoredInterruptStaysIgnored) {
    auto* const before = std::signal(SIGINT, SIG_IGN);
    startAndWait();
    std::signal(SIGINT, before);
    EXPECT_TRUE(ignoresInterrupt());
    EXPECT_FALSE(catchesInterrupt());
}

}  // namespace

}  // namespace jstore::test
