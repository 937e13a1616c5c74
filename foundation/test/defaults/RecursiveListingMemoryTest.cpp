// What a recursive listing holds at a time is counted in entries: it grows with depth and the widest folder.
#include "GeneratedTree.h"
#include "ListingTest.h"
#include "foundation/storage/provider/FolderEntryIteratorRangeAdapter.h"

namespace foundation::test {
namespace {

class RecursiveListingMemoryTest : public ListingTest {
protected:
    /// Folders of ten that hold folders of ten, down to files.
    static std::vector<FolderEntry> tenAtEachDepth(std::size_t depth) {
        std::vector<FolderEntry> entries;
        for (char16_t name = u'0'; name <= u'9'; ++name) {
            entries.emplace_back(std::u16string(1, name), depth == 4 ? EntryType::File : EntryType::Folder);
        }
        return entries;
    }

    static std::size_t countOf(storage::provider::IFolderNameIterator& names) {
        std::size_t count = 0;
        for (; names.hasMore(); names.advance()) {
            ++count;
        }
        return count;
    }
};

TEST_F(RecursiveListingMemoryTest, HundredThousandEntriesNeverMeetInMemory) {
    const GeneratedTree tree(tenAtEachDepth);
    EXPECT_EQ(countOf(*tree.listAllRecursiveNamesOnly(GeneratedTree::root())), 111'110U);
    EXPECT_LE(tree.held().most, 50U);
    EXPECT_EQ(tree.held().now, 0U);
}

TEST_F(RecursiveListingMemoryTest, WildcardsHoldNoMore) {
    const GeneratedTree tree(tenAtEachDepth);
    EXPECT_EQ(countOf(*tree.listAllRecursiveNamesOnly(GeneratedTree::root(), u"7")), 11'111U);
    EXPECT_LE(tree.held().most, 50U);
}

TEST_F(RecursiveListingMemoryTest, WideFolderIsLetGoBeforeTheNext) {
    const GeneratedTree tree([](std::size_t depth) {
        return depth == 0 ? std::vector(100, folder(u"folder")) : std::vector(1000, file(u"file"));
    });
    EXPECT_EQ(countOf(*tree.listAllRecursiveNamesOnly(GeneratedTree::root())), 100'100U);
    EXPECT_LE(tree.held().most, 1100U);
}

TEST_F(RecursiveListingMemoryTest, ListingIsLetGoWithItsLastEntry) {
    const GeneratedTree tree([](std::size_t depth) { return std::vector(depth < 1000 ? 1 : 0, folder(u"f")); });
    EXPECT_EQ(countOf(*tree.listAllRecursiveNamesOnly(GeneratedTree::root())), 1000U);
    EXPECT_LE(tree.held().most, 2U);
}

TEST_F(RecursiveListingMemoryTest, CloneThatIsGivenUpHoldsNothing) {
    const GeneratedTree tree(tenAtEachDepth);
    auto names = tree.listAllRecursiveNamesOnly(GeneratedTree::root());
    for (int entry = 0; entry < 5; ++entry) {
        names->advance();
    }
    const std::size_t held = tree.held().now;
    std::unique_ptr<storage::provider::IFolderNameIterator> clone(names->clone());
    EXPECT_EQ(tree.held().now, 2 * held);
    clone.reset();
    EXPECT_EQ(tree.held().now, held);
    names.reset();
    EXPECT_EQ(tree.held().now, 0U);
}

TEST_F(RecursiveListingMemoryTest, TreeWithoutAnEndIsLeftAtTheGreatestDepth) {
    const GeneratedTree tree([](std::size_t) { return std::vector{folder(u"f")}; });
    const auto names = tree.listAllRecursiveNamesOnly(GeneratedTree::root());
    for (int entry = 0; entry < 2049; ++entry) {
        ASSERT_TRUE(names->hasMore());
        names->advance();
    }
    StorageIRI tooDeep = GeneratedTree::root();
    for (int depth = 0; depth < 2049; ++depth) {
        tooDeep = StorageIRI(tooDeep.text() + u"/f");
    }
    EXPECT_TRUE(names->hasMore());
    expectError(ErrorCode::InvalidLocation, tooDeep, [&] { names->advance(); });
    EXPECT_FALSE(names->hasMore());
}

TEST_F(RecursiveListingMemoryTest, FolderNamedLikeTheWayUpIsNotFollowed) {
    const GeneratedTree tree([](std::size_t depth) {
        return depth == 0 ? std::vector{folder(u".."), folder(u"."), folder(u""), file(u"last")}
                          : std::vector{file(u"below")};
    });
    const auto entries = tree.listAllRecursive(GeneratedTree::root());
    for (const std::u16string name : {u"..", u".", u""}) {
        entries->advance();
        EXPECT_EQ(entries->getCurrent(), folder(name));
        expectError(ErrorCode::InvalidLocation, GeneratedTree::root(), [&] { entries->advance(); });
    }
    EXPECT_EQ(rest(*entries), std::vector{file(u"last")});
}

TEST_F(RecursiveListingMemoryTest, ListingThatBreaksOffIsGivenUp) {
    // An adapter with an empty transform throws at every advance.
    class BrokenBelow final : public InMemoryProvider {
    protected:
        std::unique_ptr<storage::provider::IFolderEntryIterator> doListAll(const StorageIRI& location) const override {
            using namespace storage::provider;
            using Adapter = FolderEntryIteratorRangeAdapter<std::vector<FolderEntry>>;
            const bool top = location == GeneratedTree::root();
            Adapter::Transform transform;
            if (top) {
                transform = [](FolderEntry entry) { return entry; };
            }
            return std::make_unique<IClonableFolderEntryIterator<Adapter>>(
                top ? std::vector{folder(u"broken"), file(u"last")} : std::vector{file(u"never")}, transform);
        }
    };
    const BrokenBelow provider;
    const auto entries = provider.listAllRecursive(GeneratedTree::root());
    entries->advance();
    EXPECT_TRUE(entries->hasMore());
    EXPECT_THROW(entries->advance(), boost::bad_function_call);
    EXPECT_EQ(rest(*entries), std::vector{file(u"last")});
}

}  // namespace
}  // namespace foundation::test
