// The iterator over a listing: what it is, and how it walks.
#include <gmock/gmock.h>

#include <memory>
#include <vector>

#include "data/DataTest.h"
#include "data/Listing.h"
#include "foundation/storage/provider/FolderEntryIteratorRangeAdapter.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using namespace foundation::storage::provider;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using ListingIterator = IClonableFolderEntryIterator<FolderEntryIteratorRangeAdapter<std::vector<FolderEntry>>>;

class ListingIteratorTest : public DataTest {
protected:
    void SetUp() override {
        DataTest::SetUp();
        answer("listing", {"a\nB/\nc"});
        recorder.clear();
    }

    [[nodiscard]] static std::unique_ptr<IFolderEntryIterator> cloneOf(const IFolderEntryIterator& iterator) {
        return std::unique_ptr<IFolderEntryIterator>(iterator.clone());
    }
};

TEST_F(ListingIteratorTest, IsTheFrameworksClonableRangeAdapter) {
    for (const auto& iterator : {provider->listAll(location).release(), provider->listFiles(location).release(),
                                 provider->listFolders(location).release()}) {
        EXPECT_NE(dynamic_cast<ListingIterator*>(iterator), nullptr);
        const auto clone = cloneOf(*iterator);
        EXPECT_NE(dynamic_cast<ListingIterator*>(clone.get()), nullptr);
        delete iterator;
    }
}

TEST_F(ListingIteratorTest, HasMoreUntilTheLastIsReached) {
    const auto iterator = provider->listAll(location);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(iterator->hasMore());
        iterator->advance();
    }
    EXPECT_FALSE(iterator->hasMore());
    EXPECT_EQ(iterator->getCurrent(), FolderEntry(u"c", EntryType::File)) << "the last entry stays";
}

TEST_F(ListingIteratorTest, CurrentEntryMayBeReadTwice) {
    const auto iterator = provider->listAll(location);
    iterator->advance();
    EXPECT_EQ(iterator->getCurrent(), FolderEntry(u"a", EntryType::File));
    EXPECT_EQ(iterator->getCurrent(), FolderEntry(u"a", EntryType::File));
    iterator->advance();
    EXPECT_EQ(iterator->getCurrent(), FolderEntry(u"B", EntryType::Folder));
}

TEST_F(ListingIteratorTest, CloneBeforeTheFirstStepWalksEverything) {
    const auto iterator = provider->listAll(location);
    const auto clone = cloneOf(*iterator);
    EXPECT_EQ(rest(*clone), rest(*iterator));
}

TEST_F(ListingIteratorTest, CloneHasTheSameCurrentEntryAndTheSameRest) {
    const auto iterator = provider->listAll(location);
    iterator->advance();
    const auto clone = cloneOf(*iterator);
    EXPECT_EQ(clone->getCurrent(), iterator->getCurrent());
    EXPECT_THAT(rest(*clone), ElementsAre(Child{u"B", EntryType::Folder}, Child{u"c", EntryType::File}));
    EXPECT_THAT(rest(*iterator), ElementsAre(Child{u"B", EntryType::Folder}, Child{u"c", EntryType::File}));
}

TEST_F(ListingIteratorTest, CloneAndOriginalMoveOnTheirOwn) {
    const auto iterator = provider->listAll(location);
    iterator->advance();
    const auto clone = cloneOf(*iterator);
    clone->advance();
    EXPECT_EQ(iterator->getCurrent().name(), u"a");
    iterator->advance();
    iterator->advance();
    EXPECT_EQ(clone->getCurrent().name(), u"B");
    EXPECT_TRUE(clone->hasMore());
}

TEST_F(ListingIteratorTest, CloneAtTheEndHasNothingLeft) {
    const auto iterator = provider->listAll(location);
    static_cast<void>(rest(*iterator));
    const auto clone = cloneOf(*iterator);
    EXPECT_FALSE(clone->hasMore());
    EXPECT_EQ(clone->getCurrent().name(), u"c");
}

TEST_F(ListingIteratorTest, CloneOutlivesItsOriginal) {
    auto iterator = provider->listAll(location);
    iterator->advance();
    const auto clone = cloneOf(*iterator);
    iterator.reset();
    EXPECT_EQ(clone->getCurrent().name(), u"a");
    EXPECT_EQ(rest(*clone).size(), 2U);
}

TEST_F(ListingIteratorTest, YieldsWhatWasThereWhenItWasMade) {
    const auto iterator = provider->listAll(location);
    iterator->advance();
    answer("listing", {"new"});
    EXPECT_THAT(rest(*iterator), ElementsAre(Child{u"B", EntryType::Folder}, Child{u"c", EntryType::File}));
}

TEST_F(ListingIteratorTest, TouchesNoJavaObject) {
    const auto iterator = provider->listAll(location);
    recorder.clear();
    const auto clone = cloneOf(*iterator);
    EXPECT_EQ(rest(*iterator).size() + rest(*clone).size(), 6U);
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
}

TEST_F(ListingIteratorTest, OutlivesTheProviderAndTheMachine) {
    const auto iterator = provider->listAll(location);
    provider.reset();
    handle->remove();
    EXPECT_EQ(rest(*iterator).size(), 3U);
    handle->restore();
}

TEST_F(ListingIteratorTest, WalksOnAnyThread) {
    const auto iterator = provider->listAll(location);
    onFreshThread([&] {
        EXPECT_EQ(rest(*iterator).size(), 3U);
        EXPECT_FALSE(isAttached(vm()));
    });
}

}  // namespace
}  // namespace storage::javaprovider::test
