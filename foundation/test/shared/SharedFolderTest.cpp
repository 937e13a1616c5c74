// Folders with their parents, what is there, and what a provider says of its locations.
#include "SharedTest.h"

namespace foundation::test {
namespace {

class SharedFolderTest : public SharedTest {};
SHARED_TESTS(SharedFolderTest);

TEST_P(SharedFolderTest, FolderIsCreatedWithItsParents) {
    const StorageIRI deep = at(u"a").getChild(u"b c").getChild(u"d%");
    provider().createFolderRecursive(deep);
    EXPECT_TRUE(provider().folderExists(deep));
    EXPECT_EQ(names(), Names{u"a"});
}

TEST_P(SharedFolderTest, FolderThatIsThereIsNoError) {
    provider().createFolder(at(u"a"));
    write(at(u"a").getChild(u"kept"), "bytes");
    EXPECT_NO_THROW(provider().createFolderRecursive(at(u"a")));
    EXPECT_NO_THROW(provider().createFolderRecursive(folder()));
    EXPECT_EQ(bytesOf(at(u"a").getChild(u"kept")), "bytes");
}

TEST_P(SharedFolderTest, FileInTheWayIsNotAFolder) {
    write(at(u"f"), "bytes");
    expectError(ErrorCode::NotAFolder, at(u"f"), [&] { provider().createFolderRecursive(at(u"f")); });
    expectError(ErrorCode::NotAFolder, at(u"f"), [&] { provider().createFolderRecursive(at(u"f").getChild(u"x")); });
    EXPECT_EQ(bytesOf(at(u"f")), "bytes");
}

TEST_P(SharedFolderTest, BothKindsOfEntryExist) {
    write(at(u"f"), "");
    provider().createFolder(at(u"d"));
    EXPECT_TRUE(provider().exists(at(u"f")));
    EXPECT_TRUE(provider().exists(at(u"d")));
    EXPECT_FALSE(provider().exists(at(u"missing")));
    EXPECT_EQ(provider().existsExtended(at(u"f")), EntryType::File);
    EXPECT_EQ(provider().existsExtended(at(u"d")), EntryType::Folder);
    EXPECT_EQ(provider().existsExtended(at(u"missing")), std::nullopt);
}

TEST_P(SharedFolderTest, SpellingsOfOneLocationCompareEqual) {
    const auto comparator = provider().getPathComparator();
    EXPECT_EQ(comparator(at(u"a"), StorageIRI(folder().text() + u"//x/../%61/")), 0);
    EXPECT_LT(comparator(at(u"a"), at(u"b")), 0);
    EXPECT_GT(comparator(at(u"a"), at(u"A")), 0);
}

TEST_P(SharedFolderTest, StorageOfAMissingLocationIsNotFound) {
    EXPECT_NO_THROW((void)provider().getProviderStorageInfo(folder()));
    expectError(ErrorCode::NotFound, at(u"missing"), [&] { (void)provider().getProviderStorageInfo(at(u"missing")); });
}

TEST_P(SharedFolderTest, CanonicalLocationIsTheNormalOne) {
    const StorageIRI odd(folder().text() + u"/missing/../%61/");
    EXPECT_EQ(provider().getCanonicalLocation(odd), at(u"a").normalized());
}

TEST_P(SharedFolderTest, MoveOntoItselfSucceedsByEveryPolicyAndChangesNothing) {
    provider().createFolder(at(u"d"));
    write(at(u"d").getChild(u"f"), "bytes");
    const StorageIRI again(folder().text() + u"//%64/");
    for (const Policy policy : {Policy::KeepExisting, Policy::ReplaceExisting, Policy::ReplaceExistingFile}) {
        for (const StorageIRI& same : {at(u"d"), again}) {
            EXPECT_NO_THROW(provider().moveFolder(at(u"d"), same, policy));
            EXPECT_NO_THROW(provider().moveFile(at(u"d").getChild(u"f"), same.getChild(u"f"), policy));
        }
    }
    EXPECT_EQ(names(), Names{u"d"});
    EXPECT_EQ(bytesOf(at(u"d").getChild(u"f")), "bytes");
}

TEST_P(SharedFolderTest, MoveOntoAnotherIsRefusedByThePolicyThatKeepsIt) {
    write(at(u"f"), "file");
    write(at(u"g"), "other");
    provider().createFolder(at(u"d"));
    provider().createFolder(at(u"e"));
    expectError(ErrorCode::AlreadyExists, at(u"g"), [&] { provider().moveFile(at(u"f"), at(u"g")); });
    expectError(ErrorCode::AlreadyExists, at(u"e"), [&] { provider().moveFolder(at(u"d"), at(u"e")); });
    EXPECT_EQ(bytesOf(at(u"f")), "file");
    EXPECT_EQ(bytesOf(at(u"g")), "other");
}

TEST_P(SharedFolderTest, WhatCannotBeMadeOfOtherOperationsIsNotSupported) {
    expectError(ErrorCode::NotSupported, at(u"f"), [&] { provider().setWritable(at(u"f"), true); });
    expectError(ErrorCode::NotSupported, at(u"f"), [&] { (void)provider().getFilenameSensitivity(at(u"f")); });
    expectError(ErrorCode::NotSupported, StorageIRI(), [&] { (void)provider().getProviderCacheUsage(); });
}

}  // namespace
}  // namespace foundation::test
