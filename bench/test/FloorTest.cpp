// A comparison is worth something when both sides do the same: the same calls of JNI, and the same answer.
#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

#include "Locations.h"
#include "Pairs.h"
#include "support/JniRecorder.h"

namespace bench {

namespace {

using storage::javaprovider::test::JniRecorder;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;

const Machine& machine() {
    static const Machine only;
    return only;
}

class FloorTest : public ::testing::Test {
protected:
    Sides m_sides{machine()};
};

/// What an operation calls, but for the call into Java that sets off events.
std::vector<std::string> callsOf(const Operation& operation, bool localFrames = true) {
    operation.once();  // looks up what is looked up once
    JniRecorder recorder(machine().jvm()->getJavaVM());
    operation.once();
    std::vector<std::string> calls = recorder.calls({.localFrames = localFrames});
    std::erase_if(calls, [](const std::string& call) { return call.starts_with("CallStaticVoidMethod"); });
    return calls;
}

void expectSameCalls(const Pair& pair) {
    SCOPED_TRACE(pair.name);
    const std::vector<std::string> floor = callsOf(pair.floor);
    EXPECT_THAT(floor, Not(IsEmpty()));
    EXPECT_THAT(floor, ElementsAreArray(callsOf(pair.bridge)));
    if (pair.bare) {
        // A floor that keeps the environment needs no frame.
        EXPECT_THAT(callsOf(*pair.bare), ElementsAreArray(callsOf(pair.bridge, /*localFrames=*/false)));
    }
}

void expectSameCalls(const std::vector<Pair>& pairs) {
    for (const Pair& pair : pairs) {
        expectSameCalls(pair);
    }
}

TEST_F(FloorTest, OperationsMakeTheCallsOfTheLibrary) { expectSameCalls(operationPairs(m_sides)); }

TEST_F(FloorTest, StreamsMakeTheCallsOfTheLibrary) { expectSameCalls(streamPairs(m_sides)); }

TEST_F(FloorTest, FailuresMakeTheCallsOfTheLibrary) { expectSameCalls(errorPairs(m_sides)); }

TEST_F(FloorTest, EventsMakeTheCallsOfTheLibrary) { expectSameCalls(eventPairs(m_sides)); }

TEST_F(FloorTest, ListingsMakeTheCallsOfTheLibrary) {
    expectSameCalls(listingPair(m_sides, 0));
    expectSameCalls(listingPair(m_sides, 25));
}

TEST_F(FloorTest, AttributesAreThoseOfTheLibrary) {
    const auto floor = m_sides.floor.provider.getFileAttributes(File.text);
    const auto bridge = m_sides.provider->getFileAttributes(File.iri);
    EXPECT_EQ(floor.size, bridge.size());
    EXPECT_EQ(floor.lastModified, bridge.lastModified());
    EXPECT_EQ(floor.writable, bridge.writable());
}

TEST_F(FloorTest, FolderAttributesAreThoseOfTheLibrary) {
    const auto floor = m_sides.floor.provider.getFolderAttributes(Folder.text);
    const auto bridge = m_sides.provider->getFolderAttributes(Folder.iri);
    EXPECT_EQ(floor.lastModified, bridge.lastModified());
    EXPECT_EQ(floor.writable, bridge.writable());
}

TEST_F(FloorTest, ExtendedAttributesAreThoseOfTheLibrary) {
    const auto floor = m_sides.floor.provider.getExtendedAttributes(File.text);
    const auto bridge = m_sides.provider->getExtendedAttributes(File.iri).all();
    ASSERT_EQ(floor.size(), bridge.size());
    for (const auto& [name, value] : floor) {
        EXPECT_EQ(boost::any_cast<std::string>(value), boost::any_cast<std::string>(bridge.at(name))) << name;
    }
}

TEST_F(FloorTest, StorageInformationIsThatOfTheLibrary) {
    const auto [capacity, occupied] = m_sides.floor.provider.getProviderStorageInfo(Folder.text);
    const auto bridge = m_sides.provider->getProviderStorageInfo(Folder.iri);
    EXPECT_EQ(capacity, bridge.storageCapacity());
    EXPECT_EQ(occupied, bridge.spaceOccupied());
}

TEST_F(FloorTest, ListingIsThatOfTheLibrary) {
    machine().setListing(25);
    const auto floor = m_sides.floor.provider.listAll(Folder.text);
    const auto bridge = m_sides.provider->listAll(Folder.iri);
    for (const FloorProvider::Entry& entry : floor) {
        ASSERT_TRUE(bridge->hasMore());
        bridge->advance();
        EXPECT_EQ(entry.name, bridge->getCurrent().name());
        EXPECT_EQ(entry.type, static_cast<int>(bridge->getCurrent().type()));
    }
    EXPECT_FALSE(bridge->hasMore());
}

TEST_F(FloorTest, StreamsMoveWhatTheyAreAskedFor) {
    EXPECT_EQ(m_sides.floor.stream->read(m_sides.buffer.data(), 4096), 4096);
    EXPECT_EQ(m_sides.stream->read(m_sides.buffer.data(), 4096), 4096);
    EXPECT_EQ(m_sides.floor.stream->write(m_sides.buffer.data(), 1 << 20), 1 << 20);
    EXPECT_EQ(m_sides.stream->write(m_sides.buffer.data(), 1 << 20), 1 << 20);
}

TEST_F(FloorTest, ProviderExceptionTellsNumberAndLocation) {
    try {
        m_sides.floor.errors.removeFolder(Folder.text);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const FloorError& error) {
        EXPECT_EQ(error.number(), 6);
        EXPECT_EQ(error.location(), Folder.text);
    }
}

TEST_F(FloorTest, OtherExceptionTellsClassAndMessage) {
    try {
        m_sides.floor.errors.removeFolderRecursive(Folder.text);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const FloorError& error) {
        EXPECT_EQ(error.number(), -1);
        EXPECT_STREQ(error.what(), "java.lang.IllegalStateException: not today");
    }
}

}  // namespace

}  // namespace bench
