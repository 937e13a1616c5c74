// The events that polling reports for a change.
#include <boost/date_time/gregorian/gregorian_types.hpp>

#include "PollingTest.h"
#include "foundation/storage/provider/FolderEntryIteratorRangeAdapter.h"

namespace foundation::test {
namespace {

const boost::posix_time::ptime LongAgo(boost::gregorian::date(2001, 2, 3));

class PollingEventsTest : public PollingTest {};

TEST_F(PollingEventsTest, AddedChildrenAreTold) {
    start();
    m_provider.createFile(child(u"a"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File a"});
    m_provider.createFolder(child(u"b"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded Folder b"});
    expectSilence();
}

TEST_F(PollingEventsTest, WhatIsThereAtTheStartIsNotTold) {
    m_provider.createFile(child(u"a"));
    start();
    expectSilence();
}

TEST_F(PollingEventsTest, WhatChangesRightAfterTheStartIsTold) {
    m_provider.createFile(child(u"a"));
    start();
    m_provider.removeFile(child(u"a"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildRemoved File a"});
}

TEST_F(PollingEventsTest, RemovedChildrenAreTold) {
    m_provider.createFile(child(u"a"));
    m_provider.createFolder(child(u"b"));
    start();
    m_provider.removeFile(child(u"a"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildRemoved File a"});
    m_provider.removeFolder(child(u"b"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildRemoved Folder b"});
}

TEST_F(PollingEventsTest, SizeTimeAndPermissionOfAChildAreModifications) {
    m_provider.createFile(child(u"a"));
    const auto made = m_provider.getFileAttributes(child(u"a")).lastModified();
    start();
    atOnce([&] {
        write(child(u"a"), "x");
        m_provider.setLastModified(child(u"a"), made);
    });
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified File a"});
    m_provider.setLastModified(child(u"a"), LongAgo);
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified File a"});
    m_provider.setReadOnly(child(u"a"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified File a"});
    expectSilence();
}

TEST_F(PollingEventsTest, FolderIsModifiedByItsOwnAttributes) {
    m_provider.createFolder(child(u"b"));
    start();
    m_provider.setLastModified(child(u"b"), LongAgo);
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified Folder b"});
    m_provider.setReadOnly(child(u"b"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified Folder b"});
}

TEST_F(PollingEventsTest, ChildThatHasAnotherTypeWasRemovedAndAdded) {
    m_provider.createFile(child(u"a"));
    start();
    atOnce([&] {
        m_provider.removeFile(child(u"a"));
        m_provider.createFolder(child(u"a"));
    });
    EXPECT_EQ(m_trail.next(2), (Lines{"ChildRemoved File a", "ChildAdded Folder a"}));
}

TEST_F(PollingEventsTest, RenamedChildWasRemovedAndAdded) {
    m_provider.createFile(child(u"a"));
    start();
    m_provider.moveFile(child(u"a"), child(u"b"));
    EXPECT_EQ(m_trail.next(2), (Lines{"ChildRemoved File a", "ChildAdded File b"}));
}

TEST_F(PollingEventsTest, ManyChangesBetweenTwoLooksAreToldByName) {
    for (const char16_t* name : {u"b", u"d", u"f"}) {
        m_provider.createFile(child(name));
    }
    start();
    atOnce([&] {
        for (const char16_t* name : {u"g", u"a", u"e"}) {
            m_provider.createFile(child(name));
        }
        m_provider.removeFile(child(u"f"));
        m_provider.removeFile(child(u"b"));
        m_provider.setLastModified(child(u"d"), LongAgo);
    });
    EXPECT_EQ(m_trail.next(6), (Lines{"ChildAdded File a", "ChildRemoved File b", "ChildModified File d",
                                      "ChildAdded File e", "ChildRemoved File f", "ChildAdded File g"}));
    expectSilence();
}

TEST_F(PollingEventsTest, WhatComesAndGoesBetweenTwoLooksIsNotSeen) {
    start();
    atOnce([&] {
        m_provider.createFile(child(u"a"));
        m_provider.removeFile(child(u"a"));
    });
    expectSilence();
}

TEST_F(PollingEventsTest, NothingDeeperIsTold) {
    m_provider.createFolder(child(u"b"));
    start();
    m_provider.createFile(child(u"b").getChild(u"deep"));
    expectSilence();
}

TEST_F(PollingEventsTest, FolderItselfIsModifiedByWhatIsNotItsChildrens) {
    start();
    m_provider.setLastModified(m_folder, LongAgo);
    EXPECT_EQ(m_trail.next(1), Lines{"SelfModified Folder folder"});
    atOnce([&] {
        m_provider.createFile(child(u"a"));
        m_provider.setLastModified(m_folder, LongAgo + boost::posix_time::hours(1));
    });
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File a"});
    expectSilence();
    atOnce([&] {
        m_provider.setLastModified(child(u"a"), LongAgo);
        m_provider.setReadOnly(m_folder);
    });
    EXPECT_EQ(m_trail.next(2), (Lines{"ChildModified File a", "SelfModified Folder folder"}));
}

TEST_F(PollingEventsTest, FileIsModifiedRemovedAndThereAgain) {
    m_provider.createFile(m_file);
    start(m_file, m_trail.callback());
    write(m_file, "bytes");
    EXPECT_EQ(m_trail.next(1), Lines{"SelfModified File file"});
    m_provider.removeFile(m_file);
    EXPECT_EQ(m_trail.next(1), Lines{"SelfRemoved File file"});
    expectSilence();
    m_provider.createFile(m_file);
    EXPECT_EQ(m_trail.next(1), Lines{"SelfModified File file"});
    m_provider.removeFile(m_file);
    EXPECT_EQ(m_trail.next(1), Lines{"SelfRemoved File file"});
}

TEST_F(PollingEventsTest, FolderThatGoesTakesItsChildrenAlongAndBringsThemBack) {
    m_provider.createFile(child(u"a"));
    m_provider.createFolder(child(u"b"));
    start();
    const StorageIRI aside(u"java://mount/aside");
    m_provider.moveFolder(m_folder, aside);
    EXPECT_EQ(m_trail.next(3), (Lines{"ChildRemoved File a", "ChildRemoved Folder b", "SelfRemoved Folder folder"}));
    expectSilence();
    m_provider.moveFolder(aside, m_folder);
    EXPECT_EQ(m_trail.next(3), (Lines{"SelfModified Folder folder", "ChildAdded File a", "ChildAdded Folder b"}));
    expectSilence();
}

TEST_F(PollingEventsTest, LocationThatHasAnotherTypeWasRemovedAndIsThereAgain) {
    m_provider.createFile(child(u"a"));
    start();
    atOnce([&] {
        m_provider.removeFolderRecursive(m_folder);
        m_provider.createFile(m_folder);
    });
    EXPECT_EQ(m_trail.next(3), (Lines{"ChildRemoved File a", "SelfRemoved Folder folder", "SelfModified File folder"}));
}

TEST_F(PollingEventsTest, EventNamesTheLocationsAsTheyWereGivenAndNoOrigin) {
    const StorageIRI spelled(u"java://mount/x/../folder");
    std::atomic<bool> told = false;
    start(spelled, [&](const Kind& kind, const StorageIRI& watched, const StorageIRI& changed, const EntryType& type,
                       const boost::property_tree::ptree& details) {
        EXPECT_EQ(kind, Kind::ChildAdded);
        EXPECT_EQ(watched, spelled);
        EXPECT_EQ(changed, spelled.getChild(u"50%"));
        EXPECT_EQ(type, EntryType::File);
        EXPECT_EQ(details.size(), 1U);
        EXPECT_EQ(details.get<std::string>("originId"), "");
        told = true;
    });
    m_provider.createFile(child(u"50%"));
    EXPECT_TRUE(eventually([&] { return told.load(); }));
    stop(m_folder);
}

/// A folder whose listing says what no location can name, and says something twice.
class OddListing final : public InMemoryProvider {
public:
    std::atomic<bool> more = false;

protected:
    std::unique_ptr<storage::provider::IFolderEntryIterator> doListAll(const StorageIRI&) const override {
        using namespace storage::provider;
        using Adapter = FolderEntryIteratorRangeAdapter<std::vector<FolderEntry>>;
        std::vector<FolderEntry> entries;
        for (const char16_t* name : {u"..", u".", u""}) {
            entries.emplace_back(name, EntryType::Folder);
        }
        if (more) {
            entries.insert(entries.end(), 2, {u"a", EntryType::File});
        }
        return std::make_unique<IClonableFolderEntryIterator<Adapter>>(entries,
                                                                       [](FolderEntry entry) { return entry; });
    }
};

TEST_F(PollingEventsTest, NamesOfNoLocationArePassedOverAndRepeatedOnesToldOnce) {
    EventTrail trail;
    OddListing provider;
    provider.createFolder(m_folder);
    provider.createFile(child(u"a"));
    provider.startChangePollingMechanism(m_folder, trail.callback(), Often);
    provider.more = true;
    EXPECT_EQ(trail.next(1), Lines{"ChildAdded File a"});
    provider.more = false;
    EXPECT_EQ(trail.next(1), Lines{"ChildRemoved File a"});
    provider.stopChangePollingMechanism(m_folder);
    EXPECT_EQ(trail.rest(), Lines());
}

}  // namespace
}  // namespace foundation::test
