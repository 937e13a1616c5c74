// The operations on real files, through the shared library and the ready back end for the default file system.
#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "foundation/storage/provider/IConfigurableProvider.h"
#include "provider/NioEndToEndTest.h"
#include "support/Eventually.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::events::Kind;
using foundation::storage::provider::EntryType;
using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::ReplacementPolicy;

// ---- events, features, configuration ----

TEST_F(NioEndToEndTest, ChangeArrivesAtTheCallback) {
    const auto watched = subfolder("watched");
    std::mutex mutex;
    std::vector<std::pair<Kind, StorageIRI>> events;
    provider->startChangeNotification(at("watched"), [&](const Kind& kind, const StorageIRI&, const StorageIRI& changed,
                                                         const EntryType&, const boost::property_tree::ptree&) {
        const std::lock_guard lock(mutex);
        events.emplace_back(kind, changed.normalized());
    });
    provider->createFile(at("watched", "new"));
    const std::pair expected(Kind::ChildAdded, at("watched", "new").normalized());
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(mutex);
        return std::find(events.begin(), events.end(), expected) != events.end();
    }));
    provider->stopChangeNotification(at("watched"));
    provider.reset();
}

TEST_F(NioEndToEndTest, FeaturesAreToldAsTheFileSystemHasThem) {
    EXPECT_TRUE(provider->hasFeature(ExtendedFeature::RecursiveFolderRemoval));
    EXPECT_FALSE(provider->hasFeature(ExtendedFeature::AtomicCopy)) << "Java is not asked";
}

TEST_F(NioEndToEndTest, ContentCacheIsSwitchedByConfiguration) {
    auto& configurable = dynamic_cast<foundation::storage::provider::IConfigurableProvider&>(*provider);
    boost::property_tree::ptree settings;
    for (const char* accepted : {"true", "false", ""}) {
        settings.put("gds.enableContentCache", accepted);
        EXPECT_NO_THROW(configurable.configure(settings)) << accepted;
    }
    settings.put("gds.enableContentCache", "maybe");
    const auto error = thrownBy<ProviderError>([&] { configurable.configure(settings); });
    ASSERT_TRUE(error);
    EXPECT_EQ(toString(error->code()), toString(ErrorCode::NotSupported));
}

// ---- error codes ----

TEST_F(NioEndToEndTest, CreateFileKeepsWhatIsThere) {
    const fs::path there = file("f");
    static_cast<void>(subfolder("d"));
    expectError(ErrorCode::AlreadyExists, at("f"), [&] { provider->createFile(at("f")); });
    expectError(ErrorCode::AlreadyExists, at("d"), [&] { provider->createFile(at("d")); });
    EXPECT_EQ(contentOf(there), "content");
}

TEST_F(NioEndToEndTest, CreateNeedsItsParentFolder) {
    static_cast<void>(file("f"));
    expectError(ErrorCode::NotFound, at("missing", "x"), [&] { provider->createFile(at("missing", "x")); });
    expectError(ErrorCode::NotFound, at("missing", "x"), [&] { provider->createFolder(at("missing", "x")); });
    expectError(ErrorCode::NotAFolder, at("f", "x"), [&] { provider->createFile(at("f", "x")); });
    expectError(ErrorCode::NotAFolder, at("f", "x"), [&] { provider->createFolder(at("f", "x")); });
}

TEST_F(NioEndToEndTest, CreateFolderKeepsWhatIsThere) {
    static_cast<void>(subfolder("d"));
    expectError(ErrorCode::AlreadyExists, at("d"), [&] { provider->createFolder(at("d")); });
}

TEST_F(NioEndToEndTest, NothingIsNeitherFileNorFolder) {
    EXPECT_FALSE(provider->fileExists(at("missing")));
    EXPECT_FALSE(provider->folderExists(at("missing")));
    EXPECT_FALSE(provider->fileExists(at("missing", "x")));
}

TEST_F(NioEndToEndTest, RemoveFileRefusesFoldersAndNothing) {
    static_cast<void>(subfolder("d"));
    expectError(ErrorCode::NotAFile, at("d"), [&] { provider->removeFile(at("d")); });
    expectError(ErrorCode::NotFound, at("missing"), [&] { provider->removeFile(at("missing")); });
    EXPECT_TRUE(fs::exists(folder.path() / "d"));
}

TEST_F(NioEndToEndTest, RemoveFolderRemovesEmptyFoldersAlone) {
    static_cast<void>(subfolder("full/child"));
    static_cast<void>(file("f"));
    expectError(ErrorCode::FolderNotEmpty, at("full"), [&] { provider->removeFolder(at("full")); });
    expectError(ErrorCode::NotAFolder, at("f"), [&] { provider->removeFolder(at("f")); });
    expectError(ErrorCode::NotFound, at("missing"), [&] { provider->removeFolder(at("missing")); });
    EXPECT_TRUE(fs::exists(folder.path() / "full/child"));
}

TEST_F(NioEndToEndTest, RemoveFolderRecursiveRemovesAll) {
    static_cast<void>(subfolder("full/child/grandchild"));
    static_cast<void>(file("full/child/f"));
    provider->removeFolderRecursive(at("full"));
    EXPECT_FALSE(fs::exists(folder.path() / "full"));
    static_cast<void>(file("f"));
    expectError(ErrorCode::NotAFolder, at("f"), [&] { provider->removeFolderRecursive(at("f")); });
    expectError(ErrorCode::NotFound, at("missing"), [&] { provider->removeFolderRecursive(at("missing")); });
}

TEST_F(NioEndToEndTest, MoveFileKeepsOrReplacesByPolicy) {
    const fs::path destination = file("to", "old");
    static_cast<void>(file("from", "new"));
    expectError(ErrorCode::AlreadyExists, at("to"), [&] { provider->moveFile(at("from"), at("to")); });
    EXPECT_EQ(contentOf(destination), "old");
    provider->moveFile(at("from"), at("to"), ReplacementPolicy::ReplaceExistingFile);
    EXPECT_EQ(contentOf(destination), "new");
    static_cast<void>(file("from", "newer"));
    provider->moveFile(at("from"), at("to"), ReplacementPolicy::ReplaceExisting);
    EXPECT_EQ(contentOf(destination), "newer");
    EXPECT_FALSE(fs::exists(folder.path() / "from"));
}

TEST_F(NioEndToEndTest, MoveFileNeedsAFileAndAPlaceForIt) {
    static_cast<void>(subfolder("d"));
    static_cast<void>(file("f"));
    expectError(ErrorCode::NotFound, at("missing"), [&] { provider->moveFile(at("missing"), at("x")); });
    expectError(ErrorCode::NotAFile, at("d"), [&] { provider->moveFile(at("d"), at("x")); });
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { provider->moveFile(at("f"), at("missing", "x")); }));
    EXPECT_TRUE(fs::exists(folder.path() / "f"));
}

TEST_F(NioEndToEndTest, MoveFolderKeepsOrReplacesByPolicy) {
    static_cast<void>(subfolder("from/new"));
    static_cast<void>(subfolder("to/old"));
    expectError(ErrorCode::AlreadyExists, at("to"), [&] { provider->moveFolder(at("from"), at("to")); });
    expectError(ErrorCode::AlreadyExists, at("to"),
                [&] { provider->moveFolder(at("from"), at("to"), ReplacementPolicy::ReplaceExistingFile); });
    EXPECT_TRUE(fs::exists(folder.path() / "to/old"));
    provider->moveFolder(at("from"), at("to"), ReplacementPolicy::ReplaceExisting);
    EXPECT_TRUE(fs::exists(folder.path() / "to/new"));
    EXPECT_FALSE(fs::exists(folder.path() / "to/old"));
}

TEST_F(NioEndToEndTest, MoveFolderIntoItselfIsRefused) {
    static_cast<void>(subfolder("d"));
    const auto error = thrownBy<ProviderError>([&] { provider->moveFolder(at("d"), at("d", "inside")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::InvalidLocation);
    EXPECT_TRUE(fs::is_directory(folder.path() / "d"));
}

TEST_F(NioEndToEndTest, LocationsOutsideTheBackEndAreRefused) {
    const std::pair<StorageIRI, ErrorCode> rows[] = {{StorageIRI(), ErrorCode::InvalidLocation},
                                                     {StorageIRI(u"no scheme at all"), ErrorCode::InvalidLocation},
                                                     {StorageIRI(u"http://example.com/a"), ErrorCode::InvalidLocation},
                                                     {StorageIRI(u"java://no-such-mount/a"), ErrorCode::Unavailable}};
    for (const auto& row : rows) {
        const auto error = thrownBy<ProviderError>([&] { provider->createFile(row.first); });
        ASSERT_TRUE(error);
        EXPECT_EQ(toString(error->code()), toString(row.second)) << row.first;
    }
}

TEST_F(NioEndToEndTest, FailuresLeaveNothingBehind) {
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(throwsExactly<ProviderError>([&] { provider->removeFile(at("missing")); }));
    }
    EXPECT_EQ(recorder.liveLocals(), 0);
}

}  // namespace
}  // namespace storage::javaprovider::test
