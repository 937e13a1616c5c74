#include "WatchTest.h"

#include <chrono>
#include <csignal>
#include <filesystem>

#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

namespace {

TEST_F(WatchTest, EventIsALineAtOnce) {
    const auto run = watching({});
    m_folder.folder("w/new");
    EXPECT_TRUE(run->readUntil(says(line("ChildAdded   ", "folder", "w/new"))));
    fs::remove(m_folder / "w/new");
    EXPECT_TRUE(run->readUntil(says(line("ChildRemoved ", "folder", "w/new"))));
    ASSERT_EQ(::kill(run->pid(), SIGINT), 0);
    const auto outcome = run->wait();
    EXPECT_EQ(outcome.exitCode, 130);
    EXPECT_EQ(outcome.out, line("ChildAdded   ", "folder", "w/new") + line("ChildRemoved ", "folder", "w/new"));
    EXPECT_EQ(outcome.err, readyLine("w") + "jstore: interrupted: 2 events\n");
}

TEST_F(WatchTest, WhatIsDeeperIsToldOfWhenAskedFor) {
    const auto flat = watching({"--count", "1"});
    const auto deep = watching({"-r", "--count", "2"});
    m_folder.folder("w/sub/\xC3\xA4 %");
    EXPECT_TRUE(deep->readUntil(says("%25\n")));
    m_folder.folder("w/last");
    EXPECT_EQ(flat->wait().out, line("ChildAdded   ", "folder", "w/last"));
    EXPECT_EQ(deep->wait().out,
              line("ChildAdded   ", "folder", "w/sub/\xC3\xA4%20%25") + line("ChildAdded   ", "folder", "w/last"));
}

TEST_F(WatchTest, CountEndsWithZero) {
    const auto run = watching({"--count", "1"});
    m_folder.folder("w/a");
    EXPECT_EQ(run->wait().exitCode, 0);
}

TEST_F(WatchTest, TimeEndsWithZero) {
    const auto begin = std::chrono::steady_clock::now();
    const auto outcome = jstore({"watch", "--for", "300ms", at("w")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
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
    EXPECT_EQ(outcome.err, "");
    auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0], json({{"verb", "watch"}, {"location", at("w")}, {"event", "Watching"}, {"ok", true}}));
    EXPECT_THAT(objects[1]["time"].get<std::string>(), MatchesRegex("20[0-9-]+T[0-9:]+[.][0-9]+Z"));
    objects[1].erase("time");
    EXPECT_EQ(objects[1], json({{"verb", "watch"},
                                {"location", at("w/a")},
                                {"event", "ChildAdded"},
                                {"type", "folder"},
                                {"watched", at("w")},
                                {"ok", true}}));
}

TEST_F(WatchTest, MissingIsThree) {
    EXPECT_THAT(jstore({"watch", at("none")}), FailsWith(3, "jstore: NotFound: " + at("none")));
}

TEST_F(WatchTest, OthersAreWatchedWhenOneIsMissing) {
    const auto outcome = jstore({"watch", "--for", "0s", at("none"), at("w")});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_EQ(outcome.err, "jstore: NotFound: " + at("none") + '\n' + readyLine("w"));
}

TEST_F(WatchTest, RemovedFolderIsToldAndEndsTheWatch) {
    const auto run = watching({});
    fs::remove_all(m_folder / "w");
    const auto outcome = run->wait();
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_THAT(outcome.out, ::testing::EndsWith(line("SelfRemoved  ", "folder", "w")));
    EXPECT_EQ(outcome.err,
              readyLine("w") + "jstore: NotFound: " + at("w") + ": it was removed and is no longer watched\n");
}

TEST_F(WatchTest, RemovedFolderLeavesTheOthersWatched) {
    m_folder.folder("v");
    const auto run = watching({"--count", "2", at("v")});
    fs::remove(m_folder / "v");
    ASSERT_TRUE(run->readUntil(says("no longer watched")));
    m_folder.folder("w/a");
    const auto outcome = run->wait();
    EXPECT_EQ(outcome.out, line("SelfRemoved  ", "folder", "v") + line("ChildAdded   ", "folder", "w/a"));
    EXPECT_EQ(outcome.exitCode, 6);
}

TEST_F(WatchTest, ReaderThatHasGoneEndsAQuietWatch) {
    EXPECT_EQ(Jstore({"watch", at("w")}).outputTo(Jstore::Output::ReaderGone).run().signal, SIGPIPE);
}

TEST_F(WatchTest, ReaderOfASocketThatHasGoneEndsAQuietWatch) {
    Jstore run({"watch", at("w")});
    EXPECT_EQ(run.outputTo(Jstore::Output::SocketReaderGone).within(std::chrono::seconds(30)).run().signal, SIGPIPE);
}

TEST_F(WatchTest, OutputThatIsFullIsTold) {
    Jstore run({"watch", at("w")});
    run.outputTo(Jstore::Output::Full).start();
    ASSERT_TRUE(run.readUntil(says("watching")));
    m_folder.folder("w/a");
    const auto outcome = run.wait();
    EXPECT_EQ(outcome.exitCode, 1);
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
    EXPECT_EQ(outcome.exitCode, 0);
    for (const auto* const name : {"w/1/x", "w/2/x", "w/3/x", "w/4/x", "w/5/x", "w/6/x", "w/sub/x"}) {
        EXPECT_THAT(outcome.out, HasSubstr(line("ChildAdded   ", "folder", name)));
    }
}

}  // namespace

}  // namespace jstore::test
