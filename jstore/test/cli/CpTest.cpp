#include "CpTest.h"

#include <sys/stat.h>

#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

TEST_F(CpTest, FileIsCopiedWithItsTime) {
    const auto time = longAgo();
    fs::last_write_time(m_folder / "a", time);
    EXPECT_THAT(jstore({"cp", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
    EXPECT_EQ(contentOf(m_folder / "b"), "content of a");
    EXPECT_EQ(fs::last_write_time(m_folder / "b"), time);
    EXPECT_EQ(count(), 2);
}

TEST_F(CpTest, LargeFileArrivesWhole) {
    std::string bytes;
    for (int i = 0; i < 1'000'001; ++i) {
        bytes += static_cast<char>(i * 31 % 251);
    }
    m_folder.file("large", bytes);
    EXPECT_THAT(jstore({"cp", at("large"), at("copy")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "copy"), bytes);
}

TEST_F(CpTest, LocalFileGoesToAMountAndBack) {
    m_folder.folder("data");
    const auto mount = "data=" + (m_folder / "data").string();
    EXPECT_THAT(Jstore({"--mount", mount, "cp", "a", "java://data/"}).in(m_folder.path()).run(), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "data/a"), "content of a");
    EXPECT_THAT(Jstore({"--mount", mount, "cp", "java://data/a", "b"}).in(m_folder.path()).run(), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "b"), "content of a");
}

TEST_F(CpTest, FileGoesIntoAnArchive) {
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto mount = "zip=jar:file://" + archive.string();
    EXPECT_THAT(jstore({"--mount", mount, "cp", at("a"), "java://zip/new"}), IsSilentlyDone());
    EXPECT_THAT(jstore({"--mount", mount, "cat", "java://zip/new"}), Prints("content of a"));
    EXPECT_THAT(jstore({"--mount", mount, "ls", "java://zip/"}), Prints("META-INF\ncom\nnew\n"));
}

TEST_F(CpTest, FolderTakesFilesIn) {
    m_folder.file("b c", "content of b");
    m_folder.folder("d");
    EXPECT_THAT(jstore({"cp", at("a"), at("b c"), at("d")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "d/a"), "content of a");
    EXPECT_EQ(contentOf(m_folder / "d/b c"), "content of b");
}

TEST_F(CpTest, SeveralSourcesNeedAFolder) {
    EXPECT_THAT(jstore({"cp", at("a"), at("a"), at("c")}), FailsWith(1, StartsWith("jstore: NotAFolder: " + at("c"))));
}

TEST_F(CpTest, MissingIsThree) {
    EXPECT_THAT(jstore({"cp", at("x"), at("y")}), FailsWith(3, "jstore: NotFound: " + at("x")));
    EXPECT_THAT(jstore({"cp", at("a"), at("x/y")}), FailsWith(3, StartsWith("jstore: NotFound: " + at("x"))));
    EXPECT_EQ(count(), 1);
}

TEST_F(CpTest, FileAtTheTargetIsKept) {
    m_folder.file("b", "content of b");
    EXPECT_THAT(jstore({"cp", at("a"), at("b")}), FailsWith(4, "jstore: AlreadyExists: " + at("b")));
    EXPECT_EQ(contentOf(m_folder / "b"), "content of b");
    EXPECT_EQ(count(), 2);
}

TEST_F(CpTest, FileIsReplacedOnRequest) {
    m_folder.file("b", "content of b, which is longer");
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "b"), "content of a");
}

TEST_F(CpTest, FileNeverReplacesAFolder) {
    m_folder.folder("d/a/inside");
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), at("d")}), FailsWith(1, HasSubstr("NotAFile: " + at("d/a"))));
    EXPECT_TRUE(fs::is_directory(m_folder / "d/a/inside"));
}

TEST_F(CpTest, FileIsNotCopiedOntoItself) {
    EXPECT_THAT(jstore({"cp", at("a"), at("a")}), FailsWith(4, HasSubstr("AlreadyExists")));
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), (m_folder / "./a").string()}),
                FailsWith(4, HasSubstr("the same file")));
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
}

TEST_F(CpTest, RefusingPlaceIsFive) {
    EXPECT_THAT(jstore({"cp", at("a"), "java:///sys/jstore-test"}),
                FailsWith(5, StartsWith("jstore: AccessDenied: java:///sys")));
}

TEST_F(CpTest, FileThatClaimsToBeEmptyIsCopiedWhole) {
    EXPECT_THAT(jstore({"cp", "java:///proc/version", at("version")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "version"), contentOf("/proc/version"));
}

TEST_F(CpTest, WhatIsNeitherFileNorFolderIsNotSupported) {
    ASSERT_EQ(::mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(jstore({"cp", at("pipe"), at("b")}), FailsWith(8, StartsWith("jstore: NotSupported: " + at("pipe"))));
    EXPECT_FALSE(fs::exists(m_folder / "b"));
}

TEST_F(CpTest, WhatIsNeitherFileNorFolderIsNotReplaced) {
    ASSERT_EQ(::mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("pipe", m_folder / "link");
    for (const auto* const target : {"pipe", "link"}) {
        EXPECT_THAT(
            jstore({"cp", "--replace", at("a"), at(target)}),
            FailsWith(8, AllOf(StartsWith("jstore: NotSupported: " + at(target)), HasSubstr("is not replaced"))));
    }
    EXPECT_TRUE(fs::is_fifo(m_folder / "pipe"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ(count(), 3);
}

TEST_F(CpTest, LinkAtTheTargetIsWrittenThrough) {
    m_folder.file("b", "content of b");
    fs::permissions(m_folder / "b", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("b", m_folder / "link");
    EXPECT_THAT(jstore({"cp", "--replace", at("a"), at("link")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ(contentOf(m_folder / "b"), "content of a");
    EXPECT_EQ(fs::status(m_folder / "b").permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(count(), 3);
}

TEST_F(CpTest, SameFileUnderAnotherNameIsRefused) {
    fs::create_hard_link(m_folder / "a", m_folder / "hard");
    fs::create_symlink("a", m_folder / "link");
    const auto mount = "here=" + m_folder.path().string();
    for (const auto& target : {at("hard"), at("link"), std::string("java://here/a"), std::string("java://here/link")}) {
        EXPECT_THAT(jstore({"--mount", mount, "cp", "--replace", at("a"), target}),
                    FailsWith(4, AllOf(StartsWith("jstore: AlreadyExists: " + target), HasSubstr("the same file"))));
    }
    EXPECT_TRUE(fs::equivalent(m_folder / "a", m_folder / "hard"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
}

TEST_F(CpTest, WhatTheCommandItselfHasPutThereStays) {
    m_folder.file("x/f", "from x");
    m_folder.file("y/f", "from y");
    m_folder.file("z/g", "from z");
    m_folder.folder("to");
    fs::create_symlink("f", m_folder / "to/g");
    const auto outcome = jstore({"cp", "--replace", at("x/f"), at("y/f"), at("z/g"), at("to")});
    EXPECT_EQ(outcome.exitCode, 6);
    ASSERT_EQ(outcome.errLines().size(), 2U) << outcome.err;
    EXPECT_THAT(outcome.errLines()[0],
                AllOf(StartsWith("jstore: AlreadyExists: " + at("to/f")), HasSubstr("just put it there")));
    EXPECT_THAT(outcome.errLines()[1],
                AllOf(StartsWith("jstore: AlreadyExists: " + at("to/g")), HasSubstr("just put it there")));
    EXPECT_EQ(contentOf(m_folder / "to/f"), "from x");
}

TEST_F(CpTest, JsonTellsDestinationAndBytes) {
    EXPECT_EQ(objectsOf(jstore({"--json", "cp", at("a"), at("b")})).at(0),
              json({{"verb", "cp"}, {"location", at("a")}, {"destination", at("b")}, {"bytes", 12}, {"ok", true}}));
}

}  // namespace

}  // namespace jstore::test
