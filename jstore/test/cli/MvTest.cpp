#include <sys/stat.h>

#include "support/FolderTest.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class MvTest : public FolderTest {
protected:
    MvTest() { m_folder.file("a", "content of a"); }
};

TEST_F(MvTest, FileIsRenamedInSilence) {
    EXPECT_THAT(jstore({"mv", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
    EXPECT_EQ(contentOf(m_folder / "b"), "content of a");
}

TEST_F(MvTest, FolderIsRenamed) {
    m_folder.folder("d/e");
    EXPECT_THAT(jstore({"mv", at("d"), at("f")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "f/e"));
}

TEST_F(MvTest, FolderTakesFilesIn) {
    m_folder.file("b c", "content of b");
    m_folder.folder("d");
    EXPECT_THAT(jstore({"mv", at("a"), at("b c"), at("d")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "d/a"), "content of a");
    EXPECT_EQ(contentOf(m_folder / "d/b c"), "content of b");
}

TEST_F(MvTest, SeveralSourcesNeedAFolder) {
    m_folder.file("b");
    EXPECT_THAT(jstore({"mv", at("a"), at("b"), at("c")}), FailsWith(1, StartsWith("jstore: NotAFolder: " + at("c"))));
    EXPECT_TRUE(fs::exists(m_folder / "a"));
}

TEST_F(MvTest, MissingSourceIsThree) {
    EXPECT_THAT(jstore({"mv", at("x"), at("y")}), FailsWith(3, "jstore: NotFound: " + at("x")));
}

TEST_F(MvTest, MissingFolderOfTheDestinationIsThree) {
    EXPECT_THAT(jstore({"mv", at("a"), at("x/y")}), FailsWith(3, StartsWith("jstore: NotFound: ")));
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
}

TEST_F(MvTest, FileAtTheDestinationIsKept) {
    m_folder.file("b", "content of b");
    EXPECT_THAT(jstore({"mv", at("a"), at("b")}), FailsWith(4, "jstore: AlreadyExists: " + at("b")));
    EXPECT_EQ(contentOf(m_folder / "b"), "content of b");
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
}

TEST_F(MvTest, FileIsReplacedOnRequest) {
    m_folder.file("b", "content of b");
    EXPECT_THAT(jstore({"mv", "--replace", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "b"), "content of a");
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(MvTest, FolderIsReplacedOnRequest) {
    m_folder.folder("new/b");
    m_folder.folder("into/new/old");
    EXPECT_EQ(jstore({"mv", at("new"), at("into")}).exitCode, 4);
    EXPECT_THAT(jstore({"mv", "--replace", at("new"), at("into")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "into/new/b"));
    EXPECT_FALSE(fs::exists(m_folder / "into/new/old"));
}

TEST_F(MvTest, FileNeverReplacesAFolder) {
    m_folder.folder("d/a/inside");
    const auto outcome = jstore({"mv", "--replace", at("a"), at("d")});
    EXPECT_THAT(outcome, FailsWith(1, StartsWith("jstore: NotAFile: " + at("d/a"))));
    EXPECT_TRUE(fs::is_directory(m_folder / "d/a/inside"));
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
}

TEST_F(MvTest, FolderNeverReplacesAFile) {
    m_folder.folder("d");
    EXPECT_THAT(jstore({"mv", "--replace", at("d"), at("a")}),
                FailsWith(1, StartsWith("jstore: NotAFolder: " + at("a"))));
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
}

TEST_F(MvTest, FolderDoesNotGoIntoItself) {
    m_folder.folder("d");
    EXPECT_THAT(jstore({"mv", at("d"), at("d")}), FailsWith(1, StartsWith("jstore: InvalidLocation: ")));
    EXPECT_TRUE(fs::is_directory(m_folder / "d"));
}

TEST_F(MvTest, WhatIsNeitherFileNorFolderIsNotReplaced) {
    ASSERT_EQ(::mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(jstore({"mv", "--replace", at("a"), at("pipe")}),
                FailsWith(8, StartsWith("jstore: NotSupported: " + at("pipe"))));
    EXPECT_TRUE(fs::is_fifo(m_folder / "pipe"));
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
}

TEST_F(MvTest, LinkAtTheDestinationIsWrittenThrough) {
    m_folder.file("b", "content of b");
    fs::permissions(m_folder / "b", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("b", m_folder / "link");
    EXPECT_THAT(jstore({"mv", "--replace", at("a"), at("link")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_FALSE(fs::exists(m_folder / "a"));
    EXPECT_EQ(contentOf(m_folder / "b"), "content of a");
    EXPECT_EQ(fs::status(m_folder / "b").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(MvTest, SameFileUnderAnotherNameIsRefused) {
    fs::create_hard_link(m_folder / "a", m_folder / "hard");
    fs::create_symlink("a", m_folder / "link");
    const auto mount = "here=" + m_folder.path().string();
    for (const auto& target : {at("hard"), at("link"), std::string("java://here/hard")}) {
        EXPECT_THAT(jstore({"--mount", mount, "mv", "--replace", at("a"), target}),
                    FailsWith(4, HasSubstr("the same file")));
    }
    EXPECT_THAT(jstore({"mv", "--replace", at("link"), at("a")}), FailsWith(4, HasSubstr("the same file")));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ(contentOf(m_folder / "a"), "content of a");
    EXPECT_EQ(contentOf(m_folder / "hard"), "content of a");
}

TEST_F(MvTest, LinkToAFolderIsNotReplaced) {
    m_folder.folder("d/new");
    m_folder.file("outside/kept");
    m_folder.folder("into");
    fs::create_directory_symlink(m_folder / "outside", m_folder / "into/d");
    EXPECT_THAT(jstore({"mv", "--replace", at("d"), at("into")}),
                FailsWith(4, StartsWith("jstore: AlreadyExists: " + at("into/d"))));
    EXPECT_TRUE(fs::exists(m_folder / "outside/kept"));
    EXPECT_TRUE(fs::exists(m_folder / "d/new"));
}

TEST_F(MvTest, WhatTheCommandItselfHasPutThereStays) {
    m_folder.file("x/f", "from x");
    m_folder.file("x/d/in", "from x");
    m_folder.file("y/f", "from y");
    m_folder.file("y/d/in", "from y");
    m_folder.file("z/g", "from z");
    m_folder.folder("to");
    fs::create_symlink("f", m_folder / "to/g");
    const auto outcome = jstore({"mv", "--replace", at("x/f"), at("x/d"), at("y/f"), at("y/d"), at("z/g"), at("to")});
    EXPECT_EQ(outcome.exitCode, 6);
    ASSERT_EQ(outcome.errLines().size(), 3U) << outcome.err;
    for (const auto& line : outcome.errLines()) {
        EXPECT_THAT(line, AllOf(StartsWith("jstore: AlreadyExists: " + at("to/")), HasSubstr("just put it there")));
    }
    EXPECT_EQ(contentOf(m_folder / "to/f"), "from x");
    EXPECT_EQ(contentOf(m_folder / "to/d/in"), "from x");
    EXPECT_EQ(contentOf(m_folder / "y/f"), "from y");
    EXPECT_EQ(contentOf(m_folder / "y/d/in"), "from y");
    EXPECT_EQ(contentOf(m_folder / "z/g"), "from z");
}

TEST_F(MvTest, RootIsRefused) {
    EXPECT_THAT(jstore({"mv", "/", at("")}), FailsWith(5, "jstore: AccessDenied: java:///: a root cannot be moved"));
}

TEST_F(MvTest, OthersFollowAFailure) {
    m_folder.folder("d");
    const auto outcome = jstore({"mv", at("x"), at("a"), at("d")});
    EXPECT_THAT(outcome, FailsWith(6, "jstore: NotFound: " + at("x")));
    EXPECT_TRUE(fs::exists(m_folder / "d/a"));
}

}  // namespace

}  // namespace jstore::test
