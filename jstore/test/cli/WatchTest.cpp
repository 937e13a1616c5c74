#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>

#include "support/Json.h"
#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

std::function<bool(const Outcome&)> says(const std::string& text) {
    return [text](const Outcome& outcome) { return (outcome.out + outcome.err).find(text) != std::string::npos; };
}

class WatchTest : public ::testing::Test {
protected:
    WatchTest() { m_folder.folder("w/sub"); }

    /// A watch of the folder "w" that has begun.
    [[nodiscard]] std::unique_ptr<Jstore> watching(std::vector<std::string> arguments, const std::string& ready) const {
        arguments.insert(arguments.begin(), "watch");
        arguments.push_back(at("w"));
        auto run = std::make_unique<Jstore>(std::move(arguments));
        run->start();
        EXPECT_TRUE(run->readUntil(says(ready))) << run->soFar().err;
        return run;
    }
    [[nodiscard]] std::unique_ptr<Jstore> watching(std::vector<std::string> arguments) const {
        return watching(std::move(arguments), readyLine("w"));
    }

    [[nodiscard]] std::string at(std::string_view name) const { return m_folder.location(name); }
    [[nodiscard]] std::string readyLine(std::string_view name) const { return "jstore: watching " + at(name) + '\n'; }
    [[nodiscard]] std::string line(const char* event, const char* type, std::string_view name) const {
        return std::string(event) + "  " + type + "  " + at(name) + '\n';
    }

    TemporaryFolder m_folder;
};

TEST_F(WatchTest, EventIsALineAtOnce) {
    const auto run = watching({});
    m_folder.folder("w/new");
    EXPECT_TRUE(run->readUntil(says(line("ChildAdded   ", "folder", "w/new"))));
    fs::remove(m_folder / "w/new");
    EXPECT_TRUE(run->readUntil(says(line("ChildRemoved ", "folder", "w/new"))));
    ASSERT_EQ(0, ::kill(run->pid(), SIGINT));
    const auto outcome = run->wait();
    EXPECT_EQ(130, outcome.exitCode);
    EXPECT_EQ(line("ChildAdded   ", "folder", "w/new") + line("ChildRemoved ", "folder", "w/new"), outcome.out);
    EXPECT_EQ(readyLine("w") + "jstore: interrupted: 2 events\n", outcome.err);
}

TEST_F(WatchTest, WhatIsDeeperIsToldOfWhenAskedFor) {
    const auto flat = watching({"--count", "1"});
    const auto deep = watching({"-r", "--count", "2"});
    m_folder.folder("w/sub/\xC3\xA4 %");
    EXPECT_TRUE(deep->readUntil(says("%25\n")));
    m_folder.folder("w/last");
    EXPECT_EQ(line("ChildAdded   ", "folder", "w/last"), flat->wait().out);
    EXPECT_EQ(line("ChildAdded   ", "folder", "w/sub/\xC3\xA4%20%25") + line("ChildAdded   ", "folder", "w/last"),
              deep->wait().out);
}

TEST_F(WatchTest, CountEndsWithZero) {
    const auto run = watching({"--count", "1"});
    m_folder.folder("w/a");
    EXPECT_EQ(0, run->wait().exitCode);
}

TEST_F(WatchTest, TimeEndsWithZero) {
    const auto begin = std::chrono::steady_clock::now();
    const auto outcome = jstore({"watch", "--for", "300ms", at("w")});
    EXPECT_EQ(0, outcome.exitCode);
    EXPECT_EQ("", outcome.out);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(300));
}

TEST_F(WatchTest, TimeStandsBeforeTheEvent) {
    const auto run = watching({"-t", "--count", "1"});
    m_folder.folder("w/a");
    EXPECT_THAT(run->wait().out, MatchesRegex("20[0-9-]+T[0-9:]+[.][0-9]+Z  ChildAdded     folder  .*/w/a\n"));
}

TEST_F(WatchTest, FileIsWatchedByItself) {
    m_folder.file("w/file", "a");
    Jstore run({"watch", "--count", "1", at("w/file")});
    run.start();
    ASSERT_TRUE(run.readUntil(says("jstore: watching")));
    m_folder.folder("w/other");
    m_folder.file("w/file", "longer");
    EXPECT_THAT(run.wait(), ::testing::Field(&Outcome::out, line("SelfModified ", "file  ", "w/file")));
}

TEST_F(WatchTest, SeveralAreWatchedAtOnce) {
    m_folder.folder("v");
    const auto run = watching({"--json", at("v")}, R"("event":"Watching","ok":true}
{"verb":"watch","location":")" + at("w"));
    m_folder.folder("v/a");
    EXPECT_TRUE(run->readUntil(says("v/a\"")));
    m_folder.folder("w/b");
    EXPECT_TRUE(run->readUntil(says("w/b\"")));
}

TEST_F(WatchTest, JsonTellsAll) {
    const auto run = watching({"--json", "--count", "1"}, R"("Watching")");
    m_folder.folder("w/a");
    const auto outcome = run->wait();
    EXPECT_EQ("", outcome.err);
    auto objects = objectsOf(outcome);
    ASSERT_EQ(2U, objects.size());
    EXPECT_EQ(json({{"verb", "watch"}, {"location", at("w")}, {"event", "Watching"}, {"ok", true}}), objects[0]);
    EXPECT_THAT(objects[1]["time"].get<std::string>(), MatchesRegex("20[0-9-]+T[0-9:]+[.][0-9]+Z"));
    objects[1].erase("time");
    EXPECT_EQ(json({{"verb", "watch"},
                    {"location", at("w/a")},
                    {"event", "ChildAdded"},
                    {"type", "folder"},
                    {"watched", at("w")},
                    {"ok", true}}),
              objects[1]);
}

TEST_F(WatchTest, MissingIsThree) {
    EXPECT_THAT(jstore({"watch", at("none")}), FailsWith(3, "jstore: NotFound: " + at("none")));
}

TEST_F(WatchTest, OthersAreWatchedWhenOneIsMissing) {
    const auto outcome = jstore({"watch", "--for", "0s", at("none"), at("w")});
    EXPECT_EQ(6, outcome.exitCode);
    EXPECT_EQ("jstore: NotFound: " + at("none") + '\n' + readyLine("w"), outcome.err);
}

TEST_F(WatchTest, RemovedFolderIsToldAndEndsTheWatch) {
    const auto run = watching({});
    fs::remove_all(m_folder / "w");
    const auto outcome = run->wait();
    EXPECT_EQ(3, outcome.exitCode);
    EXPECT_THAT(outcome.out, ::testing::EndsWith(line("SelfRemoved  ", "folder", "w")));
    EXPECT_EQ(readyLine("w") + "jstore: NotFound: " + at("w") + ": it was removed and is not watched any more\n",
              outcome.err);
}

TEST_F(WatchTest, RemovedFolderLeavesTheOthersWatched) {
    m_folder.folder("v");
    const auto run = watching({"--count", "2", at("v")});
    fs::remove(m_folder / "v");
    ASSERT_TRUE(run->readUntil(says("not watched any more")));
    m_folder.folder("w/a");
    const auto outcome = run->wait();
    EXPECT_EQ(line("SelfRemoved  ", "folder", "v") + line("ChildAdded   ", "folder", "w/a"), outcome.out);
    EXPECT_EQ(6, outcome.exitCode);
}

TEST_F(WatchTest, ReaderThatHasGoneEndsAQuietWatch) {
    EXPECT_EQ(SIGPIPE, Jstore({"watch", at("w")}).outputTo(Jstore::Output::ReaderGone).run().signal);
}

TEST_F(WatchTest, ReaderOfASocketThatHasGoneEndsAQuietWatch) {
    Jstore run({"watch", at("w")});
    EXPECT_EQ(SIGPIPE, run.outputTo(Jstore::Output::SocketReaderGone).within(std::chrono::seconds(30)).run().signal);
}

TEST_F(WatchTest, OutputThatIsFullIsTold) {
    Jstore run({"watch", at("w")});
    run.outputTo(Jstore::Output::Full).start();
    ASSERT_TRUE(run.readUntil(says("watching")));
    m_folder.folder("w/a");
    const auto outcome = run.wait();
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.err, HasSubstr("No space left on device"));
}

TEST_F(WatchTest, WrongLimitsStartNoJava) {
    const auto refused = [](const char* option, const char* value) {
        const auto outcome = jstore({"--java-home", "/nonexistent", "watch", option, value, "x"});
        EXPECT_THAT(outcome, FailsWith(2, StartsWith(std::string("jstore: watch: ") + option + ' ' + value + ": ")));
    };
    for (const auto* const value : {"10", "1.5s", "ten", "5 s", "99999h"}) {
        refused("--for", value);
    }
    for (const auto* const value : {"0", "1x", "many", "99999999999999999999"}) {
        refused("--count", value);
    }
}

class WatchCommandTest : public WatchTest {};

TEST_F(WatchCommandTest, CommandFindsTheEventInItsEnvironment) {
    const auto run = watching({"--count", "1", "--exec",
                               "echo \"$JSTORE_EVENT|$JSTORE_TYPE|$JSTORE_LOCATION|$JSTORE_WATCHED|$JSTORE_ORIGIN\"; "
                               "test -n \"$JSTORE_TIME\""});
    m_folder.folder("w/a");
    const auto outcome = run->wait();
    EXPECT_EQ(0, outcome.exitCode);
    EXPECT_EQ(line("ChildAdded   ", "folder", "w/a") + "ChildAdded|folder|" + at("w/a") + '|' + at("w") + "|\n",
              outcome.out);
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
    EXPECT_EQ(0, run->wait().exitCode);
    EXPECT_EQ(at("w/a") + '\n' + at("w/b") + '\n' + at("w/c") + '\n', contentOf(log));
}

TEST_F(WatchCommandTest, CommandThatFailsIsToldAndTheWatchGoesOn) {
    const auto run = watching({"--count", "2", "--exec", "exit 7"});
    m_folder.folder("w/a");
    m_folder.folder("w/b");
    const auto outcome = run->wait();
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_EQ(2U, outcome.outLines().size());
    EXPECT_THAT(outcome.errLines(),
                ElementsAre(HasSubstr("watching"), "jstore: Command: " + at("w/a") + ": the command ended with 7",
                            "jstore: Command: " + at("w/b") + ": the command ended with 7"));
}

TEST_F(WatchCommandTest, OutputOfTheCommandStaysOutOfTheJson) {
    const auto run = watching({"--json", "--count", "1", "--exec", "echo word; exit 1"}, R"("Watching")");
    m_folder.folder("w/a");
    const auto outcome = run->wait();
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(3U, objects.size());
    EXPECT_EQ("Command", objects[2]["error"]["code"]);
    EXPECT_THAT(outcome.err, StartsWith("word\n"));
}

TEST_F(WatchCommandTest, CommandRunsWhereEndsOfChildrenAreIgnored) {
    Jstore run({"watch", "--count", "1", "--exec", "exit 3", at("w")});
    run.through({"env", "--ignore-signal=CHLD"}).start();
    ASSERT_TRUE(run.readUntil(says(readyLine("w"))));
    m_folder.folder("w/a");
    const auto outcome = run.wait();
    EXPECT_EQ(1, outcome.exitCode);
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

/// A back end that tells things of its own.
class WatchBackEndTest : public ::testing::Test {
protected:
    static Outcome watch(const std::string& provider, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                             "com.corvallen.jstore.test." + provider, "watch", "--for", "0s"});
        return jstore(std::move(arguments));
    }
};

TEST_F(WatchBackEndTest, BackEndWithoutEventsIsEight) {
    EXPECT_THAT(watch("EmptyProvider", {"java:///x"}),
                FailsWith(8, "jstore: NotSupported: java:///x: the back end tells of no changes"));
}

TEST_F(WatchBackEndTest, BackEndWithoutRecursiveEventsIsEight) {
    EXPECT_THAT(watch("EventProvider", {"-r", "java:///x"}),
                FailsWith(8, AllOf(StartsWith("jstore: NotSupported: java:///x: "), HasSubstr("leave out -r"))));
}

TEST_F(WatchBackEndTest, WhatIsDeeperThanAskedForIsLeftOut) {
    const auto outcome = watch("EventProvider", {"--json", "java:///deep"});
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(2U, objects.size()) << outcome.err;
    EXPECT_EQ("java:///deep/child", objects[1]["location"]);
    EXPECT_EQ("someone", objects[1]["originId"]);
}

TEST_F(WatchBackEndTest, WhatNobodyAskedForIsLeftOut) {
    const auto outcome = watch("EventProvider", {"java:///elsewhere"});
    EXPECT_EQ(0, outcome.exitCode);
    EXPECT_EQ("", outcome.out);
}

TEST_F(WatchBackEndTest, EventsThatComeTooFastAreCounted) {
    const auto outcome = watch("EventProvider", {"java:///storm"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_EQ(65'536U, outcome.outLines().size());
    EXPECT_THAT(outcome.errLines(),
                ElementsAre(HasSubstr("watching"), "jstore: 4464 events came too fast and were lost"));
}

TEST_F(WatchBackEndTest, BackEndThatDoesNotStopIsTold) {
    const auto outcome = watch("EventProvider", {"java:///for-ever"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.err, HasSubstr("jstore: InUse: java:///for-ever"));
}

TEST_F(WatchTest, FoldersBeyondTheSystemsLimitAreLookedAtEverySecond) {
    for (const auto* const name : {"w/1", "w/2", "w/3", "w/4", "w/5", "w/6"}) {
        m_folder.folder(name);
    }
    const auto limited = [](const std::string& then) {
        return std::vector<std::string>{
            "unshare", "-Ur", "sh", "-c", "echo 2 > /proc/sys/user/max_inotify_watches && " + then, "sh"};
    };
    Jstore probe({"--help"});
    if (probe.through(limited("exec \"$@\"")).run().exitCode != 0) {
        GTEST_SKIP() << "this system gives no user namespace, and so no limit of its own";
    }
    Jstore run({"watch", "-r", "--count", "7", at("w")});
    run.through(limited("exec \"$@\"")).start();
    ASSERT_TRUE(run.readUntil(says("watching")));
    for (const auto* const name : {"w/1/x", "w/2/x", "w/3/x", "w/4/x", "w/5/x", "w/6/x", "w/sub/x"}) {
        m_folder.folder(name);
    }
    const auto outcome = run.wait();
    EXPECT_EQ(0, outcome.exitCode);
    for (const auto* const name : {"w/1/x", "w/2/x", "w/3/x", "w/4/x", "w/5/x", "w/6/x", "w/sub/x"}) {
        EXPECT_THAT(outcome.out, HasSubstr(line("ChildAdded   ", "folder", name)));
    }
}

}  // namespace

}  // namespace jstore::test
