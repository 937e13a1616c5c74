#include "process/Command.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "support/TemporaryFolder.h"

namespace jstore {

using test::contentOf;

namespace {

class CommandTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string run(const std::string& text, Command::Variables variables = {}) const {
        variables.emplace_back("FOLDER", m_folder.path().string());
        return Command(text, Command::Output::ToStandardOutput).run(variables);
    }

    test::TemporaryFolder m_folder;
};

TEST_F(CommandTest, VariablesAreValuesAndNeverCode) {
    const std::string evil = "$(touch \"$FOLDER/evil\"); `touch \"$FOLDER/evil\"` '\" \n; rm -rf x &";
    EXPECT_EQ(run("printf %s \"$VALUE\" > \"$FOLDER/out\"", {{"VALUE", evil}}), "");
    EXPECT_EQ(contentOf(m_folder / "out"), evil);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "evil"));
}

TEST_F(CommandTest, VariableReplacesThatOfTheProcess) {
    ::setenv("JSTORE_TEST_VARIABLE", "outer", 1);
    ::setenv("JSTORE_TEST_VARIABLE_2", "kept", 1);
    EXPECT_EQ(run("echo $JSTORE_TEST_VARIABLE $JSTORE_TEST_VARIABLE_2 > \"$FOLDER/out\"",
                  {{"JSTORE_TEST_VARIABLE", "inner"}}),
              "");
    EXPECT_EQ(contentOf(m_folder / "out"), "inner kept\n");
}

TEST_F(CommandTest, InputIsEmpty) { EXPECT_EQ(run("! read line"), ""); }

TEST_F(CommandTest, EndIsTold) {
    EXPECT_EQ(run("exit 0"), "");
    EXPECT_EQ(run("exit 3"), "ended with 3");
    EXPECT_EQ(run("kill -9 $$"), "was killed by signal 9");
    EXPECT_EQ(run("/nonexistent/program 2> \"$FOLDER/err\""), "ended with 127");
}

TEST_F(CommandTest, OutputMayGoToStandardError) {
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(Command("echo word", Command::Output::ToStandardError).run({}), "");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "word\n");
}

/// The system throws ends away that a parent ignores, and such a parent passes that on.
TEST_F(CommandTest, EndIsToldWhereEndsOfChildrenAreIgnored) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run("exit 0"), "");
    EXPECT_EQ(run("exit 3"), "ended with 3");
    std::signal(SIGCHLD, SIG_DFL);
}

TEST_F(CommandTest, NoSignalIsBlocked) {
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    EXPECT_EQ(run("kill -TERM $$; exit 0"), "was killed by signal 15");
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(CommandTest, CommandThatIsTooLongIsTold) {
    EXPECT_EQ(run("true", {{"VALUE", std::string(1 << 20, 'x')}}), "cannot be run: Argument list too long");
}

}  // namespace

}  // namespace jstore
