#include "support/FolderTest.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

class MkdirTest : public FolderTest {};

TEST_F(MkdirTest, FolderIsCreatedInSilence) {
    EXPECT_THAT(jstore({"mkdir", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "a"));
    EXPECT_TRUE(fs::is_directory(m_folder / "b"));
}

TEST_F(MkdirTest, FolderThatExistsIsFour) {
    m_folder.folder("a");
    EXPECT_THAT(jstore({"mkdir", at("a")}), FailsWith(4, "jstore: AlreadyExists: " + at("a")));
}

TEST_F(MkdirTest, MissingParentIsThree) {
    EXPECT_THAT(jstore({"mkdir", at("a/b")}),
                FailsWith(3, "jstore: NotFound: " + at("a/b") + ": has no parent folder"));
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(MkdirTest, FileInTheWayIsOne) {
    m_folder.file("a");
    const auto outcome = jstore({"mkdir", at("a/b")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errLines(), ::testing::ElementsAre(::testing::StartsWith("jstore: NotAFolder: " + at("a"))));
}

TEST_F(MkdirTest, ParentsAreCreated) {
    EXPECT_THAT(jstore({"mkdir", "-p", at("a/b/c")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "a/b/c"));
}

TEST_F(MkdirTest, FolderThatExistsIsDoneWithParents) {
    m_folder.folder("a");
    EXPECT_THAT(jstore({"mkdir", "-p", at("a"), "java:///"}), IsSilentlyDone());
}

TEST_F(MkdirTest, FileInTheWayOfParentsIsNamed) {
    m_folder.file("a");
    EXPECT_THAT(jstore({"mkdir", "-p", at("a/b/c")}), FailsWith(1, "jstore: NotAFolder: " + at("a")));
}

TEST_F(MkdirTest, OthersFollowAFailure) {
    m_folder.folder("a");
    const auto outcome = jstore({"mkdir", at("a"), at("b")});
    EXPECT_THAT(outcome, FailsWith(6, "jstore: AlreadyExists: " + at("a")));
    EXPECT_TRUE(fs::is_directory(m_folder / "b"));
}

}  // namespace

}  // namespace jstore::test
