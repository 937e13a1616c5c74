#include <filesystem>

#include "WatchTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

class WatchCommandTest : public WatchTest {};

TEST_F(WatchCommandTest, CommandFindsTheEventInItsEnvironment) {
    const auto run = watching({"--count", "1", "--exec",
                               "echo \"$JSTORE_EVENT|$JSTORE_TYPE|$JSTORE_LOCATION|$JSTORE_WATCHED|$JSTORE_ORIGIN\"; "
                               "test -n \"$JSTORE_TIME\""});
    m_folder.folder("w/a");
    const auto outcome = run->wait();
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out,
              line("ChildAdded   ", "folder", "w/a") + "ChildAdded|folder|" + at("w/a") + '|' + at("w") + "|\n");
}

TEST_F(WatchCommandTest, NameIsNeverCode) {
    const auto run =
        watching({"--count", "1", "--exec", "[ -n \"$JSTORE_LOCATION\" ] && printf '%s\\n' $JSTORE_EVENT"});
    m_folder.folder(
        "w/$(touch "
        "evil);`touch evil`'\"");
    EXPECT_THAT(run->wait().outLines(), ElementsAre(HasSubstr("$(touch"), "ChildAdded"));
    EXPECT_FALSE(fs::exists("evil"));
}

TEST_F(WatchCommandTest, CommandsRunInOrderWhileEventsQueueUp) {
    const auto log = (m_folder / "log").string();
    const auto run = watching({"--count", "3", "--exec", "cat; echo $JSTORE_LOCATION >> '" + log + '\''});
    for (const auto* const name : {"w/a", "w/b", "w/c"}) {
        m_folder.folder(name);
    }
    EXPECT_EQ(run->wait().exitCode, 0);
    EXPECT_EQ(contentOf(log), at("w/a") + '\n' + at("w/b") + '\n' + at("w/c") + '\n');
}

TEST_F(WatchCommandTest, CommandThatFailsIsToldAndTheWatchGoesOn) {
    const auto run = watching({"--count", "2", "--exec", "exit 7"});
    m_folder.folder("w/a");
    m_folder.folder("w/b");
    const auto outcome = run->wait();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.outLines().size(), 2U);
    EXPECT_THAT(outcome.errLines(),
                ElementsAre(HasSubstr("watching"), "jstore: Command: " + at("w/a") + ": the command ended with 7",
                            "jstore: Command: " + at("w/b") + ": the command ended with 7"));
}

TEST_F(WatchCommandTest, OutputOfTheCommandStaysOutOfTheJson) {
    const auto run = watching({"--json", "--count", "1", "--exec", "echo word; exit 1"}, R"("Watching")");
    m_folder.folder("w/a");
    const auto outcome = run->wait();
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 3U);
    EXPECT_EQ(objects[2]["error"]["code"], "Command");
    EXPECT_THAT(outcome.err, StartsWith("word\n"));
}

TEST_F(WatchCommandTest, CommandRunsWhereEndsOfChildrenAreIgnored) {
    Jstore run({"watch", "--count", "1", "--exec", "exit 3", at("w")});
    run.through({"env", "--ignore-signal=CHLD"}).start();
    ASSERT_TRUE(run.readUntil(says(readyLine("w"))));
    m_folder.folder("w/a");
    const auto outcome = run.wait();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("the command ended with 3\n"));
}

/// Java's files and watches are no business of a command's; what the caller opened for it is.
TEST_F(WatchCommandTest, CommandHasTheDescriptorsOfTheCallerOnly) {
    Jstore run({"watch", "--count", "1", "--exec", "ls -l /proc/self/fd", at("w")});
    run.through({"/bin/sh", "-c", "exec \"$@\" 7</dev/zero", "sh"}).start();
    ASSERT_TRUE(run.readUntil(says(readyLine("w"))));
    m_folder.folder("w/a");
    const auto out = run.wait().out;
    EXPECT_THAT(out, HasSubstr(" 7 -> /dev/zero\n"));
    EXPECT_THAT(out, Not(AnyOf(HasSubstr(".jar\n"), HasSubstr("/lib/modules\n"), HasSubstr("inotify"))));
}

}  // namespace

}  // namespace jstore::test
