// Wildcard and names-only listings of one folder.
#include "ListingTest.h"

namespace foundation::test {
namespace {

class PlainListingTest : public ListingTest {
protected:
    void SetUp() override {
        ListingTest::SetUp();
        m_provider.createFile(m_folder.getChild(u"a.txt"));
        m_provider.createFolder(m_folder.getChild(u"b"));
        m_provider.createFolder(m_folder.getChild(u"c.txt"));
        m_provider.createFile(m_folder.getChild(u"d"));
        m_provider.createFile(m_folder.getChild(u"c.txt").getChild(u"deep.txt"));
    }
};

TEST_F(PlainListingTest, WildcardsChooseAmongTheEntries) {
    EXPECT_EQ(all(m_provider.listAll(m_folder, u"*.txt")), (std::vector{file(u"a.txt"), folder(u"c.txt")}));
    EXPECT_EQ(all(m_provider.listFiles(m_folder, u"*.txt")), std::vector{file(u"a.txt")});
    EXPECT_EQ(all(m_provider.listFolders(m_folder, u"*.txt")), std::vector{folder(u"c.txt")});
    EXPECT_EQ(all(m_provider.listAll(m_folder, u"?")), (std::vector{folder(u"b"), file(u"d")}));
    EXPECT_TRUE(all(m_provider.listAll(m_folder, u"none*")).empty());
    EXPECT_EQ(all(m_provider.listAll(m_folder, u"*")), all(m_provider.listAll(m_folder)));
}

TEST_F(PlainListingTest, NamesOnlyListingsGiveTheNames) {
    EXPECT_EQ(all(m_provider.listAllNamesOnly(m_folder)), (Names{u"a.txt", u"b", u"c.txt", u"d"}));
    EXPECT_EQ(all(m_provider.listFilesNamesOnly(m_folder)), (Names{u"a.txt", u"d"}));
    EXPECT_EQ(all(m_provider.listFoldersNamesOnly(m_folder)), (Names{u"b", u"c.txt"}));
}

TEST_F(PlainListingTest, NamesOnlyListingsKnowWildcards) {
    EXPECT_EQ(all(m_provider.listAllNamesOnly(m_folder, u"*.txt")), (Names{u"a.txt", u"c.txt"}));
    EXPECT_EQ(all(m_provider.listFilesNamesOnly(m_folder, u"*.txt")), Names{u"a.txt"});
    EXPECT_EQ(all(m_provider.listFoldersNamesOnly(m_folder, u"*.txt")), Names{u"c.txt"});
}

TEST_F(PlainListingTest, NothingMoreIsPromisedThanThereIs) {
    const auto entries = m_provider.listAll(m_folder, u"a*");
    EXPECT_TRUE(entries->hasMore());
    EXPECT_TRUE(entries->hasMore());
    entries->advance();
    EXPECT_EQ(entries->getCurrent(), file(u"a.txt"));
    EXPECT_FALSE(entries->hasMore());
    EXPECT_EQ(entries->getCurrent(), file(u"a.txt"));
}

TEST_F(PlainListingTest, EntriesComeWithoutAskingWhetherThereAreMore) {
    const auto entries = m_provider.listAll(m_folder, u"?");
    entries->advance();
    EXPECT_EQ(entries->getCurrent(), folder(u"b"));
    entries->advance();
    EXPECT_EQ(entries->getCurrent(), file(u"d"));
}

TEST_F(PlainListingTest, CloneMovesOnItsOwn) {
    const auto entries = m_provider.listAll(m_folder, u"*.txt");
    entries->advance();
    EXPECT_TRUE(entries->hasMore());
    const std::unique_ptr<storage::provider::IFolderEntryIterator> clone(entries->clone());
    EXPECT_EQ(clone->getCurrent(), file(u"a.txt"));
    EXPECT_EQ(rest(*entries), std::vector{folder(u"c.txt")});
    EXPECT_EQ(clone->getCurrent(), file(u"a.txt"));
    EXPECT_EQ(rest(*clone), std::vector{folder(u"c.txt")});
}

TEST_F(PlainListingTest, CloneOfNamesOutlivesTheOriginal) {
    auto names = m_provider.listAllNamesOnly(m_folder);
    names->advance();
    const std::unique_ptr<storage::provider::IFolderNameIterator> clone(names->clone());
    names.reset();
    EXPECT_EQ(clone->getCurrent(), u"a.txt");
    EXPECT_EQ(rest(*clone), (Names{u"b", u"c.txt", u"d"}));
}

TEST_F(PlainListingTest, SlashInANameIsPartOfIt) {
    const StorageIRI odd = m_folder.getChild(u"x/y");
    m_provider.createFile(odd);
    EXPECT_EQ(all(m_provider.listAllNamesOnly(m_folder, u"x/?")), Names{u"x/y"});
    EXPECT_TRUE(all(m_provider.listAllNamesOnly(m_folder, u"y")).empty());
}

TEST_F(PlainListingTest, MissingFolderIsReportedAtOnce) {
    const StorageIRI missing = m_folder.getChild(u"missing");
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listAll(missing, u"*"); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listFiles(missing, u"*"); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listFolders(missing, u"*"); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listAllNamesOnly(missing); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listFilesNamesOnly(missing); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)m_provider.listFoldersNamesOnly(missing, u"*"); });
}

TEST_F(PlainListingTest, FileIsNotAFolder) {
    const StorageIRI file = m_folder.getChild(u"d");
    expectError(ErrorCode::NotAFolder, file, [&] { (void)m_provider.listAll(file, u"*"); });
    expectError(ErrorCode::NotAFolder, file, [&] { (void)m_provider.listAllNamesOnly(file); });
}

}  // namespace
}  // namespace foundation::test
