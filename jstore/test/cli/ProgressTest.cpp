#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "support/Jstore.h"
#include "support/Matchers.h"
#include "support/Screen.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

/// A copy that stands still half-way until the gate is opened.
class ProgressTest : public ::testing::Test {
protected:
    ProgressTest() {
        if (::mkfifo(m_gate.c_str(), 0600) != 0) {
            throw std::runtime_error("no named pipe");
        }
    }

    [[nodiscard]] std::vector<std::string> copy(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> command{programUnderTest(),
                                         "--class-path",
                                         JSTORE_TEST_BACKENDS,
                                         "--provider",
                                         "com.corvallen.jstore.test.HalfwayProvider",
                                         "--jvm-option",
                                         "-Djstore.test.gate=" + m_gate.string()};
        command.insert(command.end(), options.begin(), options.end());
        command.insert(command.end(), {"cp", "java:///source.txt", "java:///target.txt"});
        return command;
    }

    /// Waits until the copy is half-way and lets it go on.
    void openGate() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        int writer = -1;
        // Opening to write fails as long as nobody has the pipe open for reading.
        while ((writer = ::open(m_gate.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) < 0) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline);
            std::this_thread::yield();
        }
        ::close(writer);
    }

    /// Runs to the end; true if nothing was drawn, nor could have been.
    [[nodiscard]] bool isQuiet(const std::vector<std::string>& command, const Screen::Setup& setup) const {
        Screen screen(command, setup);
        std::ofstream gate(m_gate);  // blocks until the copy is half-way
        const bool draws = screen.hasThread("progress");
        gate.close();
        EXPECT_EQ(screen.finish(), 0);
        return !draws && screen.raw().empty();
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_gate = m_folder / "gate";
};

TEST_F(ProgressTest, LineTellsHowFarAndGoesAtTheEnd) {
    Screen screen(copy());
    ASSERT_TRUE(screen.waitFor("50%"));
    EXPECT_THAT(screen.cursorLine(), HasSubstr("source.txt"));
    EXPECT_THAT(screen.cursorLine(), HasSubstr("500/1000"));
    EXPECT_THAT(screen.cursorLine(), HasSubstr("[====="));
    EXPECT_LT(screen.cursorLine().size(), 80U);
    openGate();
    EXPECT_EQ(screen.finish(), 0);
    EXPECT_EQ(screen.cursorLine(), "");
    EXPECT_THAT(screen.lines(), IsEmpty());
}

TEST_F(ProgressTest, ErrorStandsAlone) {
    Screen screen(copy({"--jvm-option", "-Djstore.test.fail=1"}));
    ASSERT_TRUE(screen.waitFor("50%"));
    openGate();
    EXPECT_EQ(screen.finish(), 1);
    EXPECT_THAT(screen.lines(), ElementsAre("jstore: Unavailable: java:///source.txt"));
    EXPECT_EQ(screen.cursorLine(), "");
}

TEST_F(ProgressTest, LineFollowsTheWidthOfTheTerminal) {
    Screen screen(copy(), {.columns = 5});
    ASSERT_TRUE(screen.waitFor(" 50%"));
    EXPECT_EQ(screen.cursorLine(), " 50%");
    screen.resize(70);
    EXPECT_TRUE(screen.waitFor("source.txt"));
    openGate();
    EXPECT_EQ(screen.finish(), 0);
}

TEST_F(ProgressTest, JsonAndTheLineGoTogether) {
    Screen screen(copy({"--json"}));
    ASSERT_TRUE(screen.waitFor("50%"));
    openGate();
    EXPECT_EQ(screen.finish(), 0);
    EXPECT_THAT(screen.lines(), ElementsAre(HasSubstr(R"("bytes":1000,"ok":true})")));
    EXPECT_EQ(screen.cursorLine(), "");
}

TEST_F(ProgressTest, InterruptClearsTheLine) {
    Screen screen(copy());
    ASSERT_TRUE(screen.waitFor("50%"));
    screen.type("\x03");
    ASSERT_TRUE(screen.waitFor("^C"));
    openGate();
    EXPECT_EQ(screen.finish(), 130);
    EXPECT_EQ(screen.cursorLine(), "");
    ASSERT_FALSE(screen.lines().empty());
    EXPECT_THAT(screen.lines().back(), HasSubstr("jstore: interrupted: 0 copied"));
}

TEST_F(ProgressTest, StoppedTerminalDoesNotStopTheCopy) {
    Screen screen(copy());
    ASSERT_TRUE(screen.waitFor("50%"));
    screen.stop();
    openGate();
    EXPECT_EQ(screen.finish(), 0);
}

TEST_F(ProgressTest, QuietWhereNobodyWantsIt) {
    EXPECT_TRUE(isQuiet(copy({"--no-progress"}), {}));
    EXPECT_TRUE(isQuiet(copy(), {.terminal = "dumb"}));
    EXPECT_TRUE(isQuiet(copy(), {.terminal = ""}));
    EXPECT_TRUE(isQuiet(copy(), {.outputToPipe = true}));
}

TEST_F(ProgressTest, QuickCommandsDrawNothing) {
    Screen screen({programUnderTest(), "exists", "/"});
    EXPECT_EQ(screen.finish(), 0);
    EXPECT_THAT(screen.raw(), Not(HasSubstr("\x1B")));
}

}  // namespace

}  // namespace jstore::test
