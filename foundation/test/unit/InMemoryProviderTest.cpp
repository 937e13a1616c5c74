// The back end that other tests stand on behaves as a back end must.
#include "InMemoryProvider.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

namespace foundation::test {
namespace {

using namespace storage::provider;
using storage::events::Kind;

class InMemoryProviderTest : public testing::Test {
protected:
    static void expectError(ErrorCode code, const std::function<void()>& action) {
        try {
            action();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const Exception& error) {
            EXPECT_EQ(error.code(), code) << error.what();
        }
    }

    void writeFile(const StorageIRI& location, const std::string& bytes) {
        const auto stream =
            m_provider.openByteStream(location, {.creation = ByteStreamOpenOptions::Creation::CreateIfMissing,
                                                 .content = ByteStreamOpenOptions::Content::Truncate});
        EXPECT_EQ(stream->write(bytes.data(), static_cast<std::streamsize>(bytes.size())),
                  static_cast<std::streamsize>(bytes.size()));
        stream->close();
    }

    static std::vector<FolderEntry> entries(const std::unique_ptr<IFolderEntryIterator>& iterator) {
        std::vector<FolderEntry> result;
        while (iterator->hasMore()) {
            iterator->advance();
            result.push_back(iterator->getCurrent());
        }
        return result;
    }

    const StorageIRI m_root{u"java://mount"};
    const StorageIRI m_folder{u"java://mount/folder"};
    const StorageIRI m_file{u"java://mount/folder/file"};
    const StorageIRI m_other{u"java://mount/folder/other"};
    InMemoryProvider m_provider;
};

TEST_F(InMemoryProviderTest, CreationFailsByCase) {
    expectError(ErrorCode::NotFound, [this] { m_provider.createFile(m_file); });
    m_provider.createFolder(m_folder);
    m_provider.createFile(m_file);
    expectError(ErrorCode::AlreadyExists, [this] { m_provider.createFile(m_file); });
    expectError(ErrorCode::AlreadyExists, [this] { m_provider.createFolder(m_file); });
    expectError(ErrorCode::AlreadyExists, [this] { m_provider.createFolder(m_root); });
    expectError(ErrorCode::NotAFolder, [this] { m_provider.createFile(m_file.getChild(u"x")); });
    m_provider.setReadOnly(m_folder);
    expectError(ErrorCode::AccessDenied, [this] { m_provider.createFile(m_other); });
}

TEST_F(InMemoryProviderTest, RemovalFailsByCase) {
    m_provider.createFolder(m_folder);
    m_provider.createFile(m_file);
    expectError(ErrorCode::NotFound, [this] { m_provider.removeFile(m_other); });
    expectError(ErrorCode::NotAFile, [this] { m_provider.removeFile(m_folder); });
    expectError(ErrorCode::NotAFolder, [this] { m_provider.removeFolder(m_file); });
    expectError(ErrorCode::FolderNotEmpty, [this] { m_provider.removeFolder(m_folder); });
    expectError(ErrorCode::AccessDenied, [this] { m_provider.removeFolderRecursive(m_root); });
    m_provider.removeFolderRecursive(m_folder);
    EXPECT_FALSE(m_provider.exists(m_file));
    EXPECT_FALSE(m_provider.exists(m_folder));
}

TEST_F(InMemoryProviderTest, ListingGivesTheDirectChildrenAlone) {
    m_provider.createFolder(m_folder);
    m_provider.createFile(m_file);
    m_provider.createFolder(m_other);
    m_provider.createFile(m_other.getChild(u"deep"));
    m_provider.createFolder(StorageIRI(u"java://mount/folder2"));
    const FolderEntry file(u"file", EntryType::File);
    const FolderEntry other(u"other", EntryType::Folder);
    EXPECT_EQ(entries(m_provider.listAll(m_folder)), (std::vector{file, other}));
    EXPECT_EQ(entries(m_provider.listFiles(m_folder)), std::vector{file});
    EXPECT_EQ(entries(m_provider.listFolders(m_folder)), std::vector{other});
    EXPECT_EQ(entries(m_provider.listAll(m_root)).size(), 2U);
    expectError(ErrorCode::NotFound, [this] { (void)m_provider.listAll(m_folder.getChild(u"none")); });
    expectError(ErrorCode::NotAFolder, [this] { (void)m_provider.listAll(m_file); });
}

TEST_F(InMemoryProviderTest, StreamReadsWhatWasWritten) {
    m_provider.createFolder(m_folder);
    writeFile(m_file, "hello");
    const auto stream = m_provider.openReadOnlyByteStream(m_file);
    char buffer[8] = {};
    EXPECT_EQ(stream->seek(-3, std::ios_base::end), std::streampos(2));
    EXPECT_EQ(stream->read(buffer, sizeof buffer), 3);
    EXPECT_STREQ(buffer, "llo");
    EXPECT_EQ(stream->read(buffer, sizeof buffer), -1);
    expectError(ErrorCode::AccessDenied, [&] { (void)stream->write("x", 1); });
    stream->close();
    expectError(ErrorCode::Unavailable, [&] { (void)stream->read(buffer, 1); });
    EXPECT_EQ(m_provider.openStreams(m_file), 0);
}

TEST_F(InMemoryProviderTest, WritingBeyondTheEndFillsWithZeros) {
    m_provider.createFolder(m_folder);
    writeFile(m_file, "a");
    const auto stream = m_provider.openByteStream(m_file);
    EXPECT_EQ(stream->seek(3, std::ios_base::beg), std::streampos(3));
    EXPECT_EQ(stream->write("b", 1), 1);
    stream->close();
    EXPECT_EQ(m_provider.bytesOf(m_file), std::string("a\0\0b", 4));
}

TEST_F(InMemoryProviderTest, OpeningFailsByCase) {
    m_provider.createFolder(m_folder);
    expectError(ErrorCode::NotFound, [this] { (void)m_provider.openByteStream(m_file); });
    expectError(ErrorCode::NotAFile, [this] { (void)m_provider.openReadOnlyByteStream(m_folder); });
    writeFile(m_file, "a");
    const auto stream = m_provider.openReadOnlyByteStream(m_file);
    const ByteStreamOpenOptions alone{.content = ByteStreamOpenOptions::Content::Truncate,
                                      .sharing = ByteStreamOpenOptions::Sharing::Exclusive};
    expectError(ErrorCode::InUse, [&] { (void)m_provider.openByteStream(m_file, alone); });
    EXPECT_EQ(m_provider.bytesOf(m_file), "a");
    stream->close();
    const auto exclusive = m_provider.openByteStream(m_file, alone);
    expectError(ErrorCode::InUse, [this] { (void)m_provider.openReadOnlyByteStream(m_file); });
    exclusive->close();
    m_provider.setReadOnly(m_file);
    expectError(ErrorCode::AccessDenied, [this] { (void)m_provider.openByteStream(m_file); });
}

TEST_F(InMemoryProviderTest, FileMovesByPolicy) {
    m_provider.createFolder(m_folder);
    writeFile(m_file, "file");
    writeFile(m_other, "other");
    expectError(ErrorCode::AlreadyExists, [this] { m_provider.moveFile(m_file, m_other); });
    m_provider.moveFile(m_file, m_other, ReplacementPolicy::ReplaceExistingFile);
    EXPECT_EQ(m_provider.bytesOf(m_other), "file");
    EXPECT_FALSE(m_provider.exists(m_file));
    expectError(ErrorCode::NotFound, [this] { m_provider.moveFile(m_file, m_other); });
    m_provider.createFolder(m_file);
    expectError(ErrorCode::AlreadyExists,
                [this] { m_provider.moveFile(m_other, m_file, ReplacementPolicy::ReplaceExistingFile); });
    m_provider.moveFile(m_other, m_file, ReplacementPolicy::ReplaceExisting);
    EXPECT_TRUE(m_provider.fileExists(m_file));
}

TEST_F(InMemoryProviderTest, MoveOntoItselfIsMadeOfWhatMayBeMoved) {
    m_provider.createFolder(m_folder);
    expectError(ErrorCode::NotFound, [this] { m_provider.moveFile(m_file, m_file); });
    writeFile(m_file, "file");
    expectError(ErrorCode::NotAFile, [this] { m_provider.moveFile(m_folder, m_folder); });
    expectError(ErrorCode::NotAFolder, [this] { m_provider.moveFolder(m_file, m_file); });
}

TEST_F(InMemoryProviderTest, FolderMovesWithAllItHolds) {
    m_provider.createFolder(m_folder);
    m_provider.createFolder(m_other);
    writeFile(m_other.getChild(u"deep"), "deep");
    const StorageIRI target(u"java://mount/target");
    expectError(ErrorCode::InvalidLocation, [this] { m_provider.moveFolder(m_folder, m_other.getChild(u"x")); });
    m_provider.moveFolder(m_folder, target);
    EXPECT_FALSE(m_provider.exists(m_folder));
    EXPECT_EQ(m_provider.bytesOf(target.getChild(u"other").getChild(u"deep")), "deep");
}

TEST_F(InMemoryProviderTest, AttributesTellSizeTimeAndWritability) {
    m_provider.createFolder(m_folder);
    writeFile(m_file, "four");
    const boost::posix_time::ptime time(boost::gregorian::date(2020, 2, 29));
    m_provider.setLastModified(m_file, time);
    m_provider.setReadOnly(m_file);
    const FileAttributes attributes = m_provider.getFileAttributes(m_file);
    EXPECT_EQ(attributes.size(), 4U);
    EXPECT_EQ(attributes.lastModified(), time);
    EXPECT_FALSE(attributes.writable());
    EXPECT_TRUE(m_provider.getFolderAttributes(m_folder).writable());
    expectError(ErrorCode::NotAFolder, [this] { (void)m_provider.getFolderAttributes(m_file); });
    EXPECT_EQ(m_provider.getProviderStorageInfo(m_root).spaceOccupied(), 4U);
    EXPECT_EQ(m_provider.getProviderStorageInfo(m_root).storageCapacity(), std::nullopt);
}

TEST_F(InMemoryProviderTest, WatchersHearOfChanges) {
    std::vector<std::tuple<Kind, StorageIRI, EntryType>> heard;
    const ChangeCallback callback = [&heard](const Kind& kind, const StorageIRI&, const StorageIRI& changed,
                                             const EntryType& type, const boost::property_tree::ptree&) {
        heard.emplace_back(kind, changed, type);
    };
    m_provider.createFolder(m_folder);
    m_provider.startChangeNotificationOnParent(m_file, callback);
    m_provider.createFile(m_file);
    m_provider.removeFile(m_file);
    m_provider.stopChangeNotification(m_folder);
    m_provider.createFile(m_file);
    EXPECT_EQ(heard, (std::vector<std::tuple<Kind, StorageIRI, EntryType>>{
                         {Kind::ChildAdded, m_file, EntryType::File}, {Kind::ChildRemoved, m_file, EntryType::File}}));
}

}  // namespace
}  // namespace foundation::test
