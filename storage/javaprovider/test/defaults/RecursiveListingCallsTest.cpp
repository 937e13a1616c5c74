// A recursive listing asks Java for a folder when its turn comes, and keeps no more than the way to it.
#include <gmock/gmock.h>

#include "defaults/JavaStorage.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::StorageIRI;

class RecursiveListingCallsTest : public JvmTest {
protected:
    static constexpr int Folders = 10;
    static constexpr int Files = 6;

    void SetUp() override {
        JvmTest::SetUp();
        for (char16_t name = u'a'; name < u'a' + Folders; ++name) {
            const StorageIRI folder = storage.folder().getChild(std::u16string(1, name));
            storage.provider().createFolder(folder);
            for (char16_t file = u'a'; file < u'a' + Files; ++file) {
                storage.provider().createFile(folder.getChild(std::u16string(1, file)));
            }
        }
    }

    JavaStorage storage{"MemoryMount"};
};

TEST_F(RecursiveListingCallsTest, EachFolderIsListedOnceWhenItsTurnComes) {
    JniRecorder recorder(vm());
    const auto listings = [&] { return static_cast<int>(recorder.count("CallObjectMethod listFolder")); };
    const auto entries = storage.provider().listAllRecursive(storage.folder());
    EXPECT_EQ(listings(), 1);
    int folders = 0;
    for (int entry = 0; entry < Folders * (Files + 1); ++entry) {
        entries->advance();
        // A folder that has just been given is listed at the next step.
        EXPECT_EQ(listings(), 1 + folders);
        folders += entries->getCurrent().type() == EntryType::Folder ? 1 : 0;
        EXPECT_LE(recorder.liveLocals(), 2);
    }
    EXPECT_FALSE(entries->hasMore());
    EXPECT_EQ(folders, Folders);
    EXPECT_EQ(listings(), 1 + Folders);
    // Each is asked whether it is a link; the files are not.
    EXPECT_EQ(recorder.count("CallObjectMethod getExtendedAttributes"), static_cast<std::size_t>(Folders));
}

TEST_F(RecursiveListingCallsTest, ListingThatIsGivenUpAsksForNothingMore) {
    JniRecorder recorder(vm());
    {
        const auto names = storage.provider().listAllRecursiveNamesOnly(storage.folder());
        names->advance();
        names->advance();
    }
    EXPECT_EQ(recorder.count("CallObjectMethod listFolder"), 2U);
}

}  // namespace
}  // namespace storage::javaprovider::test
