#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class MvTest : public ::testing::Test {
protected:
    MvTest() { m_folder.file("a", "content of a"); }

    [[nodiscard]] std::string at(std::string_view name) const { return m_folder.location(name); }

    TemporaryFolder m_folder;
};

TEST_F(MvTest, FileIsRenamedInSilence) {
    EXPECT_THAT(jstore({"mv", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "a"));
    EXPECT_EQ("content of a", contentOf(m_folder / "b"));
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
    EXPECT_EQ("content of a", contentOf(m_folder / "d/a"));
    EXPECT_EQ("content of b", contentOf(m_folder / "d/b c"));
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
    EXPECT_EQ("content of a", contentOf(m_folder / "a"));
}

TEST_F(MvTest, FileAtTheDestinationIsKept) {
    m_folder.file("b", "content of b");
    EXPECT_THAT(jstore({"mv", at("a"), at("b")}), FailsWith(4, "jstore: AlreadyExists: " + at("b")));
    EXPECT_EQ("content of b", contentOf(m_folder / "b"));
    EXPECT_EQ("content of a", contentOf(m_folder / "a"));
}

TEST_F(MvTest, FileIsReplacedOnRequest) {
    m_folder.file("b", "content of b");
    EXPECT_THAT(jstore({"mv", "--replace", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_EQ("content of a", contentOf(m_folder / "b"));
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(MvTest, FolderIsReplacedOnRequest) {
    m_folder.folder("new/b");
    m_folder.folder("into/new/old");
    EXPECT_EQ(4, jstore({"mv", at("new"), at("into")}).exitCode);
    EXPECT_THAT(jstore({"mv", "--replace", at("new"), at("into")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "into/new/b"));
    EXPECT_FALSE(fs::exists(m_folder / "into/new/old"));
}

TEST_F(MvTest, FileNeverReplacesAFolder) {
    m_folder.folder("d/a/inside");
    const auto outcome = jstore({"mv", "--replace", at("a"), at("d")});
    EXPECT_THAT(outcome, FailsWith(1, StartsWith("jstore: NotAFile: " + at("d/a"))));
    EXPECT_TRUE(fs::is_directory(m_folder / "d/a/inside"));
    EXPECT_EQ("content of a", contentOf(m_folder / "a"));
}

TEST_F(MvTest, FolderNeverReplacesAFile) {
    m_folder.folder("d");
    EXPECT_THAT(jstore({"mv", "--replace", at("d"), at("a")}),
                FailsWith(1, StartsWith("jstore: NotAFolder: " + at("a"))));
    EXPECT_EQ("content of a", contentOf(m_folder / "a"));
}

TEST_F(MvTest, FolderDoesNotGoIntoItself) {
    m_folder.folder("d");
    EXPECT_THAT(jstore({"mv", at("d"), at("d")}), FailsWith(1, StartsWith("jstore: InvalidLocation: ")));
    EXPECT_TRUE(fs::is_directory(m_folder / "d"));
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
