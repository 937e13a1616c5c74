#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace {

class ExistsTest : public ::testing::Test {
protected:
    ExistsTest() {
        m_folder.file("file");
        m_folder.folder("folder");
    }

    TemporaryFolder m_folder;
};

TEST_F(ExistsTest, FileIsAFile) { EXPECT_THAT(jstore({"exists", m_folder.location("file")}), Prints("file\n")); }

TEST_F(ExistsTest, FolderIsAFolder) {
    EXPECT_THAT(jstore({"exists", m_folder.location("folder")}), Prints("folder\n"));
}

TEST_F(ExistsTest, NothingIsMissing) {
    const auto outcome = jstore({"exists", m_folder.location("none")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.out, "missing\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(ExistsTest, SeveralLocationsAreNamed) {
    const auto outcome = jstore({"exists", m_folder.location("file"), m_folder.location("folder")});
    EXPECT_THAT(outcome,
                Prints("file\t" + m_folder.location("file") + "\nfolder\t" + m_folder.location("folder") + '\n'));
}

TEST_F(ExistsTest, SomeOfSeveralIsSix) {
    const auto outcome = jstore({"exists", m_folder.location("none"), m_folder.location("file")});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_EQ(outcome.out, "missing\t" + m_folder.location("none") + "\nfile\t" + m_folder.location("file") + '\n');
}

TEST_F(ExistsTest, NoneOfSeveralIsThree) {
    EXPECT_EQ(jstore({"exists", m_folder.location("none"), m_folder.location("file/x")}).exitCode, 3);
}

TEST_F(ExistsTest, LocalPathIsALocation) {
    EXPECT_THAT(Jstore({"exists", "file"}).in(m_folder.path()).run(), Prints("file\n"));
    EXPECT_THAT(Jstore({"exists", "../file"}).in(m_folder / "folder").run(), Prints("file\n"));
}

TEST_F(ExistsTest, RootIsAFolder) { EXPECT_THAT(jstore({"exists", "java:///"}), Prints("folder\n")); }

}  // namespace

}  // namespace jstore::test
