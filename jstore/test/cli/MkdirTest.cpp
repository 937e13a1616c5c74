#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

class MkdirTest : public ::testing::Test {
protected:
    TemporaryFolder m_folder;
};

TEST_F(MkdirTest, FolderIsCreatedInSilence) {
    EXPECT_THAT(jstore({"mkdir", m_folder.location("a"), m_folder.location("b")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "a"));
    EXPECT_TRUE(fs::is_directory(m_folder / "b"));
}

TEST_F(MkdirTest, FolderThatExistsIsFour) {
    m_folder.folder("a");
    EXPECT_THAT(jstore({"mkdir", m_folder.location("a")}),
                FailsWith(4, "jstore: AlreadyExists: " + m_folder.location("a")));
}

TEST_F(MkdirTest, MissingParentIsThree) {
    EXPECT_THAT(jstore({"mkdir", m_folder.location("a/b")}),
                FailsWith(3, "jstore: NotFound: " + m_folder.location("a/b") + ": has no parent folder"));
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(MkdirTest, FileInTheWayIsOne) {
    m_folder.file("a");
    const auto outcome = jstore({"mkdir", m_folder.location("a/b")});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_THAT(outcome.errLines(),
                ::testing::ElementsAre(::testing::StartsWith("jstore: NotAFolder: " + m_folder.location("a"))));
}

TEST_F(MkdirTest, ParentsAreCreated) {
    EXPECT_THAT(jstore({"mkdir", "-p", m_folder.location("a/b/c")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / "a/b/c"));
}

TEST_F(MkdirTest, FolderThatExistsIsDoneWithParents) {
    m_folder.folder("a");
    EXPECT_THAT(jstore({"mkdir", "-p", m_folder.location("a"), "java:///"}), IsSilentlyDone());
}

TEST_F(MkdirTest, FileInTheWayOfParentsIsNamed) {
    m_folder.file("a");
    EXPECT_THAT(jstore({"mkdir", "-p", m_folder.location("a/b/c")}),
                FailsWith(1, "jstore: NotAFolder: " + m_folder.location("a")));
}

TEST_F(MkdirTest, OthersFollowAFailure) {
    m_folder.folder("a");
    const auto outcome = jstore({"mkdir", m_folder.location("a"), m_folder.location("b")});
    EXPECT_THAT(outcome, FailsWith(6, "jstore: AlreadyExists: " + m_folder.location("a")));
    EXPECT_TRUE(fs::is_directory(m_folder / "b"));
}

}  // namespace

}  // namespace jstore::test
