// Listings that are made of a back end's own.
#include "SharedTest.h"

namespace foundation::test {
namespace {

class SharedListingTest : public SharedTest {
protected:
    void SetUp() override {
        SharedTest::SetUp();
        write(at(u"a.txt"), "");
        provider().createFolder(at(u"b"));
        provider().createFolder(at(u"c.txt"));
        write(at(u"d"), "");
        provider().createFolder(at(u"b").getChild(u"x \u00E4"));
        write(at(u"b").getChild(u"x \u00E4").getChild(u"deep.txt"), "");
        write(at(u"c.txt").getChild(u"\U0001F600"), "");
    }
};
SHARED_TESTS(SharedListingTest);

TEST_P(SharedListingTest, WildcardsChooseAmongTheEntries) {
    EXPECT_EQ(sorted(provider().listAll(folder(), u"*.txt")), (std::vector{file(u"a.txt"), folderEntry(u"c.txt")}));
    EXPECT_EQ(sorted(provider().listFiles(folder(), u"*.txt")), std::vector{file(u"a.txt")});
    EXPECT_EQ(sorted(provider().listFolders(folder(), u"*.txt")), std::vector{folderEntry(u"c.txt")});
    EXPECT_EQ(sorted(provider().listAll(folder(), u"?")), (std::vector{folderEntry(u"b"), file(u"d")}));
    EXPECT_EQ(sorted(provider().listAll(at(u"c.txt"), u"?")), std::vector{file(u"\U0001F600")});
    EXPECT_TRUE(sorted(provider().listAll(folder(), u"none*")).empty());
}

TEST_P(SharedListingTest, NamesOnlyListingsGiveTheNames) {
    EXPECT_EQ(sorted(provider().listAllNamesOnly(folder())), (Names{u"a.txt", u"b", u"c.txt", u"d"}));
    EXPECT_EQ(sorted(provider().listFilesNamesOnly(folder())), (Names{u"a.txt", u"d"}));
    EXPECT_EQ(sorted(provider().listFoldersNamesOnly(folder())), (Names{u"b", u"c.txt"}));
}

TEST_P(SharedListingTest, NamesOnlyListingsKnowWildcards) {
    EXPECT_EQ(sorted(provider().listAllNamesOnly(folder(), u"*.txt")), (Names{u"a.txt", u"c.txt"}));
    EXPECT_EQ(sorted(provider().listFilesNamesOnly(folder(), u"*.txt")), Names{u"a.txt"});
    EXPECT_EQ(sorted(provider().listFoldersNamesOnly(folder(), u"*.txt")), Names{u"c.txt"});
}

TEST_P(SharedListingTest, RecursiveListingsGiveThePathsOfTheTree) {
    EXPECT_EQ(sorted(provider().listAllRecursive(folder())),
              (std::vector{file(u"a.txt"), folderEntry(u"b"), folderEntry(u"b/x \u00E4"), file(u"b/x \u00E4/deep.txt"),
                           folderEntry(u"c.txt"), file(u"c.txt/\U0001F600"), file(u"d")}));
    EXPECT_EQ(sorted(provider().listAllRecursiveNamesOnly(folder())),
              (Names{u"a.txt", u"b", u"b/x \u00E4", u"b/x \u00E4/deep.txt", u"c.txt", u"c.txt/\U0001F600", u"d"}));
}

TEST_P(SharedListingTest, WildcardsOfRecursiveListingsMeanTheLastName) {
    EXPECT_EQ(sorted(provider().listAllRecursive(folder(), u"*.txt")),
              (std::vector{file(u"a.txt"), file(u"b/x \u00E4/deep.txt"), folderEntry(u"c.txt")}));
    EXPECT_EQ(sorted(provider().listAllRecursiveNamesOnly(folder(), u"x*")), Names{u"b/x \u00E4"});
}

TEST_P(SharedListingTest, FoldersComeBeforeWhatTheyHold) {
    const auto entries = provider().listAllRecursiveNamesOnly(folder());
    const Names walk = rest(*entries);
    const auto placeOf = [&](const std::u16string& name) { return std::ranges::find(walk, name); };
    EXPECT_LT(placeOf(u"b"), placeOf(u"b/x \u00E4"));
    EXPECT_LT(placeOf(u"b/x \u00E4"), placeOf(u"b/x \u00E4/deep.txt"));
    EXPECT_LT(placeOf(u"c.txt"), placeOf(u"c.txt/\U0001F600"));
}

TEST_P(SharedListingTest, FolderThatVanishesBeforeItsTurnIsPassedOver) {
    const auto names = provider().listAllRecursiveNamesOnly(at(u"b"));
    names->advance();
    provider().removeFolderRecursive(at(u"b").getChild(u"x \u00E4"));
    EXPECT_EQ(rest(*names), Names());
}

TEST_P(SharedListingTest, CloneMovesOnItsOwn) {
    const auto entries = provider().listAllRecursiveNamesOnly(folder());
    entries->advance();
    entries->advance();
    const std::unique_ptr<storage::provider::IFolderNameIterator> clone(entries->clone());
    EXPECT_EQ(clone->getCurrent(), entries->getCurrent());
    const Names remaining = rest(*entries);
    EXPECT_EQ(remaining.size(), 5U);
    EXPECT_EQ(rest(*clone), remaining);
}

TEST_P(SharedListingTest, MissingFolderAndFileAreReportedAtOnce) {
    const StorageIRI missing = at(u"missing");
    expectError(ErrorCode::NotFound, missing, [&] { (void)provider().listAll(missing, u"*"); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)provider().listFilesNamesOnly(missing); });
    expectError(ErrorCode::NotFound, missing, [&] { (void)provider().listAllRecursive(missing); });
    expectError(ErrorCode::NotAFolder, at(u"d"), [&] { (void)provider().listFolders(at(u"d"), u"*"); });
    expectError(ErrorCode::NotAFolder, at(u"d"), [&] { (void)provider().listAllRecursiveNamesOnly(at(u"d")); });
}

}  // namespace
}  // namespace foundation::test
