// Change events by polling.
#include <boost/date_time/gregorian/gregorian_types.hpp>

#include <chrono>

#include "EventTrail.h"
#include "SharedTest.h"

namespace foundation::test {
namespace {

class SharedPollingTest : public SharedTest {
protected:
    using Lines = std::vector<std::string>;

    void TearDown() override {
        for (const StorageIRI& location : m_polled) {
            provider().stopChangePollingMechanism(location);
        }
        EXPECT_EQ(m_trail.rest(), Lines());
    }

    void start(const StorageIRI& location) {
        m_polled.push_back(location);
        provider().startChangePollingMechanism(location, m_trail.callback(), std::chrono::milliseconds(1));
    }

    /// The next events of children. A move takes several steps, and a look in the midst of it may find the folder
    /// modified, or the hidden name that the move uses.
    Lines nextOfChildren(std::size_t count) {
        Lines found;
        while (found.size() < count) {
            const auto line = m_trail.next(1);
            if (line.empty()) {
                break;
            }
            if (line.front().starts_with("Child") && line.front().find(" .storage-") == std::string::npos) {
                found.push_back(line.front());
            }
        }
        return found;
    }

    EventTrail m_trail;
    std::vector<StorageIRI> m_polled;
    const boost::posix_time::ptime m_longAgo{boost::gregorian::date(2001, 2, 3)};
};
SHARED_TESTS(SharedPollingTest);

TEST_P(SharedPollingTest, ChildrenThatComeChangeAndGoAreTold) {
    write(at(u"there before"), "");
    start(folder());
    provider().createFile(at(u"a"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File a"});
    provider().createFolder(at(u"d \u00E4"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded Folder d \xC3\xA4"});
    provider().setLastModified(at(u"a"), m_longAgo);
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified File a"});
    provider().moveFile(at(u"a"), at(u"b"));
    const Lines renamed = nextOfChildren(2);
    EXPECT_THAT(renamed, testing::UnorderedElementsAre("ChildRemoved File a", "ChildAdded File b"));
    provider().removeFolder(at(u"d \u00E4"));
    EXPECT_EQ(nextOfChildren(1), Lines{"ChildRemoved Folder d \xC3\xA4"});
}

TEST_P(SharedPollingTest, FileIsModifiedRemovedAndThereAgain) {
    write(at(u"f"), "bytes");
    start(at(u"f"));
    provider().setLastModified(at(u"f"), m_longAgo);
    EXPECT_EQ(m_trail.next(1), Lines{"SelfModified File f"});
    provider().removeFile(at(u"f"));
    EXPECT_EQ(m_trail.next(1), Lines{"SelfRemoved File f"});
    provider().createFile(at(u"f"));
    EXPECT_EQ(m_trail.next(1), Lines{"SelfModified File f"});
}

TEST_P(SharedPollingTest, FolderThatGoesAndComesBackIsTold) {
    const StorageIRI watched = at(u"w");
    provider().createFolder(watched);
    start(watched);
    provider().removeFolder(watched);
    EXPECT_EQ(m_trail.next(1), Lines{"SelfRemoved Folder w"});
    provider().createFolder(watched);
    EXPECT_EQ(m_trail.next(1), Lines{"SelfModified Folder w"});
    provider().createFile(watched.getChild(u"a"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File a"});
}

TEST_P(SharedPollingTest, MissingLocationIsRefused) {
    expectError(ErrorCode::NotFound, at(u"missing"), [&] { start(at(u"missing")); });
}

}  // namespace
}  // namespace foundation::test
