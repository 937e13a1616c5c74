// Libraries built apart call these interfaces through their virtual tables, so the order of the slots is pinned here.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "InMemoryProvider.h"
#include "VirtualTable.h"
#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/IConfigurableProvider.h"
#include "foundation/storage/provider/IFolderEntryIterator.h"
#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "foundation/storage/provider/TransactionalStream.h"
#include "jvm_interface/JVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace foundation {
namespace {

using storage::provider::ByteStream;
using storage::provider::IFolderEntryIterator;
using storage::provider::IFolderNameIterator;
using storage::provider::IProvider;
using storage::provider::PhysicalProviderFactory;
using storage::provider::StorageIRI;
using test::entryAt;
using test::entryOf;
using test::slotOf;

/// Makes the protected operations nameable.
class Opened : public storage::provider::IConfigurableProvider {
public:
    using IConfigurableProvider::doConfigure;
    using IProvider::doCopyFile;
    using IProvider::doCopyFileAtomic;
    using IProvider::doCreateFile;
    using IProvider::doCreateFolder;
    using IProvider::doCreateFolderRecursive;
    using IProvider::doExists;
    using IProvider::doExistsExtended;
    using IProvider::doFileExists;
    using IProvider::doFolderExists;
    using IProvider::doGetCanonicalLocation;
    using IProvider::doGetExtendedAttributes;
    using IProvider::doGetFileAttributes;
    using IProvider::doGetFilenameSensitivity;
    using IProvider::doGetFolderAttributes;
    using IProvider::doGetPathComparator;
    using IProvider::doGetProviderCacheUsage;
    using IProvider::doGetProviderStorageInfo;
    using IProvider::doHasFeature;
    using IProvider::doListAll;
    using IProvider::doListAllNamesOnly;
    using IProvider::doListAllNamesOnlyWildcards;
    using IProvider::doListAllRecursive;
    using IProvider::doListAllRecursiveNamesOnly;
    using IProvider::doListAllRecursiveNamesOnlyWildcards;
    using IProvider::doListAllRecursiveWildcards;
    using IProvider::doListAllWildcards;
    using IProvider::doListFiles;
    using IProvider::doListFilesNamesOnly;
    using IProvider::doListFilesNamesOnlyWildcards;
    using IProvider::doListFilesWildcards;
    using IProvider::doListFolders;
    using IProvider::doListFoldersNamesOnly;
    using IProvider::doListFoldersNamesOnlyWildcards;
    using IProvider::doListFoldersWildcards;
    using IProvider::doMoveFile;
    using IProvider::doMoveFolder;
    using IProvider::doOpenByteStream;
    using IProvider::doOpenReadOnlyByteStream;
    using IProvider::doOpenTransactionalStream;
    using IProvider::doOpenTransactionalStreamAtScratchLocation;
    using IProvider::doRemoveFile;
    using IProvider::doRemoveFolder;
    using IProvider::doRemoveFolderRecursive;
    using IProvider::doSetLastModified;
    using IProvider::doSetWritable;
    using IProvider::doShutdown;
    using IProvider::doStartChangeNotification;
    using IProvider::doStartChangeNotificationOnParent;
    using IProvider::doStartChangePollingMechanism;
    using IProvider::doStopChangeNotification;
    using IProvider::doStopChangePollingMechanism;
    using IProvider::doTruncateToSize;
};

struct Slot {
    std::size_t number;
    std::string name;
    std::size_t found;
};

// The macro takes the name once, so that it cannot differ from the function that is checked.
#define SLOT(number, name) \
    Slot { number, #name, slotOf(&Opened::name) }

TEST(SlotOrderTest, FileAndFolderOperationsKeepTheirSlots) {
    const std::vector<Slot> slots = {
        SLOT(1, doCreateFile),
        SLOT(2, doCreateFolder),
        SLOT(3, doCreateFolderRecursive),
        SLOT(4, doFileExists),
        SLOT(5, doFolderExists),
        SLOT(6, doRemoveFile),
        SLOT(7, doMoveFile),
        SLOT(8, doRemoveFolder),
        SLOT(9, doRemoveFolderRecursive),
        SLOT(10, doMoveFolder),
        SLOT(11, doGetFileAttributes),
        SLOT(12, doGetFolderAttributes),
        SLOT(13, doOpenByteStream),
        SLOT(14, doOpenReadOnlyByteStream),
        SLOT(15, doOpenTransactionalStream),
        SLOT(16, doOpenTransactionalStreamAtScratchLocation),
    };
    ASSERT_EQ(slots.size(), 16U);
    for (const Slot& slot : slots) {
        EXPECT_EQ(slot.found, slot.number) << slot.name;
    }
}

TEST(SlotOrderTest, ListingsKeepTheirSlots) {
    const std::vector<Slot> slots = {
        SLOT(17, doListAll),
        SLOT(18, doListAllWildcards),
        SLOT(19, doListFiles),
        SLOT(20, doListFilesWildcards),
        SLOT(21, doListFolders),
        SLOT(22, doListFoldersWildcards),
        SLOT(23, doListAllNamesOnly),
        SLOT(24, doListAllNamesOnlyWildcards),
        SLOT(25, doListFoldersNamesOnly),
        SLOT(26, doListFoldersNamesOnlyWildcards),
        SLOT(27, doListFilesNamesOnly),
        SLOT(28, doListFilesNamesOnlyWildcards),
        SLOT(29, doListAllRecursive),
        SLOT(30, doListAllRecursiveWildcards),
        SLOT(31, doListAllRecursiveNamesOnly),
        SLOT(32, doListAllRecursiveNamesOnlyWildcards),
    };
    ASSERT_EQ(slots.size(), 16U);
    for (const Slot& slot : slots) {
        EXPECT_EQ(slot.found, slot.number) << slot.name;
    }
}

TEST(SlotOrderTest, RemainingOperationsKeepTheirSlots) {
    const std::vector<Slot> slots = {
        SLOT(33, doCopyFile),
        SLOT(34, doCopyFileAtomic),
        SLOT(35, doSetLastModified),
        SLOT(36, doSetWritable),
        SLOT(37, doStartChangeNotification),
        SLOT(38, doStartChangeNotificationOnParent),
        SLOT(39, doStopChangeNotification),
        SLOT(40, doStartChangePollingMechanism),
        SLOT(41, doStopChangePollingMechanism),
        SLOT(42, doHasFeature),
        SLOT(43, doGetPathComparator),
        SLOT(44, doGetCanonicalLocation),
        SLOT(45, doGetFilenameSensitivity),
        SLOT(46, doShutdown),
        SLOT(47, doExists),
        SLOT(48, doExistsExtended),
        SLOT(49, doGetExtendedAttributes),
        SLOT(50, doGetProviderStorageInfo),
        SLOT(51, doTruncateToSize),
        SLOT(52, doGetProviderCacheUsage),
        SLOT(53, doConfigure),
    };
    ASSERT_EQ(slots.size(), 21U);
    for (const Slot& slot : slots) {
        EXPECT_EQ(slot.found, slot.number) << slot.name;
    }
}

#undef SLOT

TEST(SlotOrderTest, ByteStreamKeepsItsSlots) {
    EXPECT_EQ(slotOf(&ByteStream::read), 1U);
    EXPECT_EQ(slotOf(&ByteStream::write), 2U);
    EXPECT_EQ(slotOf(&ByteStream::seek), 3U);
    EXPECT_EQ(slotOf(&ByteStream::close), 4U);
    EXPECT_EQ(slotOf(&storage::provider::TransactionalStream::commit), 5U);
    EXPECT_EQ(slotOf(&storage::provider::TransactionalStream::rollback), 6U);
}

TEST(SlotOrderTest, FactoryKeepsItsSlots) {
    EXPECT_EQ(slotOf(&PhysicalProviderFactory::createProvider), 1U);
    EXPECT_EQ(slotOf(&PhysicalProviderFactory::getRootIri), 2U);
}

TEST(SlotOrderTest, VirtualMachineHandlesKeepTheirSlots) {
    EXPECT_EQ(entryOf(&jvm_interface::JVM::getJavaVM), 0U);
    EXPECT_EQ(slotOf(&::storage::jvm::JVMWrapper::getEnv), 1U);
}

TEST(SlotOrderTest, IteratorsKeepTheirSlotsBeforeTheDestructor) {
    EXPECT_EQ(entryOf(&IFolderEntryIterator::getCurrent), 0U);
    EXPECT_EQ(entryOf(&IFolderEntryIterator::hasMore), 1U);
    EXPECT_EQ(entryOf(&IFolderEntryIterator::advance), 2U);
    EXPECT_EQ(entryOf(&IFolderEntryIterator::clone), 3U);
    EXPECT_EQ(entryOf(&IFolderNameIterator::getCurrent), 0U);
    EXPECT_EQ(entryOf(&IFolderNameIterator::hasMore), 1U);
    EXPECT_EQ(entryOf(&IFolderNameIterator::advance), 2U);
    EXPECT_EQ(entryOf(&IFolderNameIterator::clone), 3U);
}

TEST(SlotOrderTest, CallThroughTheTableReachesTheOperation) {
    test::InMemoryProvider provider;
    const IProvider* const base = &provider;
    using FolderExists = bool(const IProvider*, const StorageIRI&);
    // Slot 5 is entry 6: the destructor takes the first two.
    const auto folderExists = entryAt<FolderExists>(base, 6);
    EXPECT_FALSE(folderExists(base, StorageIRI(u"java:///a")));
    provider.createFolder(StorageIRI(u"java:///a"));
    EXPECT_TRUE(folderExists(base, StorageIRI(u"java:///a")));
}

TEST(SlotOrderTest, LastSlotOfAProviderIsConfigure) {
    test::InMemoryProvider provider;
    storage::provider::IConfigurableProvider* const base = &provider;
    using Configure = void(IProvider*, const boost::property_tree::ptree&);
    boost::property_tree::ptree settings;
    settings.put("key", "value");
    entryAt<Configure>(base, 54)(base, settings);
    EXPECT_EQ(provider.settings().get<std::string>("key"), "value");
}

}  // namespace
}  // namespace foundation
