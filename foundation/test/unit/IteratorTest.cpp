#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/storage/provider/FolderEntryIteratorRangeAdapter.h"

namespace foundation::storage::provider {
namespace {

using Adapter = FolderEntryIteratorRangeAdapter<std::vector<FolderEntry>>;
using Iterator = IClonableFolderEntryIterator<Adapter>;

const FolderEntry FileA(u"a", EntryType::File);
const FolderEntry FolderB(u"B", EntryType::Folder);
const FolderEntry FileC(u"c", EntryType::File);

FolderEntry passThrough(FolderEntry entry) { return entry; }

std::vector<FolderEntry> rest(IFolderEntryIterator& iterator) {
    std::vector<FolderEntry> entries;
    while (iterator.hasMore()) {
        iterator.advance();
        entries.push_back(iterator.getCurrent());
    }
    return entries;
}

TEST(IteratorTest, EntriesComeInTheOrderOfTheRange) {
    Iterator iterator({FileA, FolderB, FileC}, passThrough);
    EXPECT_EQ(rest(iterator), (std::vector{FileA, FolderB, FileC}));
    EXPECT_FALSE(iterator.hasMore());
}

TEST(IteratorTest, AdvanceGoesToTheEntryThatIsThenCurrent) {
    Iterator iterator({FileA, FolderB}, passThrough);
    EXPECT_TRUE(iterator.hasMore());
    iterator.advance();
    EXPECT_EQ(iterator.getCurrent(), FileA);
    EXPECT_EQ(iterator.getCurrent(), FileA);
    EXPECT_TRUE(iterator.hasMore());
    iterator.advance();
    EXPECT_EQ(iterator.getCurrent(), FolderB);
    EXPECT_FALSE(iterator.hasMore());
}

TEST(IteratorTest, EmptyRangeHasNothing) { EXPECT_FALSE(Iterator({}, passThrough).hasMore()); }

TEST(IteratorTest, RepeatedNamesAreKept) {
    Iterator iterator({FileA, FileA}, passThrough);
    EXPECT_EQ(rest(iterator).size(), 2U);
}

TEST(IteratorTest, CloneStartsWhereTheOriginalIsAndMovesByItself) {
    Iterator iterator({FileA, FolderB, FileC}, passThrough);
    iterator.advance();
    const std::unique_ptr<IFolderEntryIterator> clone(iterator.clone());
    EXPECT_EQ(clone->getCurrent(), FileA);
    EXPECT_EQ(rest(iterator), (std::vector{FolderB, FileC}));
    EXPECT_EQ(clone->getCurrent(), FileA);
    EXPECT_EQ(rest(*clone), (std::vector{FolderB, FileC}));
}

TEST(IteratorTest, CloneOutlivesTheOriginal) {
    auto iterator = std::make_unique<Iterator>(std::vector{FileA, FolderB}, passThrough);
    iterator->advance();
    const std::unique_ptr<IFolderEntryIterator> clone(iterator->clone());
    iterator.reset();
    EXPECT_EQ(clone->getCurrent(), FileA);
    EXPECT_EQ(rest(*clone), std::vector{FolderB});
}

TEST(IteratorTest, CloneOfACloneBeforeTheFirstAdvanceHasEverything) {
    const Iterator iterator({FileA, FolderB}, passThrough);
    const std::unique_ptr<IFolderEntryIterator> clone(iterator.clone());
    const std::unique_ptr<IFolderEntryIterator> second(clone->clone());
    EXPECT_EQ(rest(*second), (std::vector{FileA, FolderB}));
    EXPECT_TRUE(clone->hasMore());
}

TEST(IteratorTest, TransformIsAppliedOnceToEachEntry) {
    int calls = 0;
    Iterator iterator({FileA, FolderB}, [&calls](FolderEntry entry) {
        ++calls;
        return FolderEntry(entry.name() + u"!", entry.type());
    });
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(rest(iterator),
              (std::vector{FolderEntry(u"a!", EntryType::File), FolderEntry(u"B!", EntryType::Folder)}));
    EXPECT_EQ(calls, 2);
}

TEST(IteratorTest, CloneHasTheTransformToo) {
    Iterator iterator({FileA}, [](FolderEntry entry) { return FolderEntry(entry.name() + u"!", entry.type()); });
    const std::unique_ptr<IFolderEntryIterator> clone(iterator.clone());
    EXPECT_EQ(rest(*clone), (std::vector{FolderEntry(u"a!", EntryType::File)}));
}

TEST(IteratorTest, EmptyTransformMakesAdvanceThrow) {
    Iterator iterator({FileA}, Adapter::Transform());
    EXPECT_TRUE(iterator.hasMore());
    EXPECT_THROW(iterator.advance(), boost::bad_function_call);
    EXPECT_TRUE(iterator.hasMore());
}

TEST(IteratorTest, ThrowingTransformLeavesTheIteratorWhereItWas) {
    bool broken = false;
    Iterator iterator({FileA, FolderB}, [&broken](FolderEntry entry) {
        if (broken) {
            throw std::runtime_error("broken");
        }
        return entry;
    });
    iterator.advance();
    broken = true;
    EXPECT_THROW(iterator.advance(), std::runtime_error);
    EXPECT_EQ(iterator.getCurrent(), FileA);
    broken = false;
    EXPECT_EQ(rest(iterator), std::vector{FolderB});
}

}  // namespace
}  // namespace foundation::storage::provider
