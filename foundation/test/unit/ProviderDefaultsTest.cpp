#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "InMemoryProvider.h"

namespace foundation::storage::provider {
namespace {

class ProviderDefaultsTest : public testing::Test {
protected:
    /// The error that `action` throws; fails the test when it throws none.
    static Exception errorOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const Exception& error) {
            return error;
        }
        ADD_FAILURE() << "nothing was thrown";
        return {ErrorCode::Unknown, StorageIRI()};
    }

    static void expectError(ErrorCode code, const StorageIRI& location, const std::function<void()>& action) {
        const Exception error = errorOf(action);
        EXPECT_EQ(error.code(), code) << error.what();
        EXPECT_EQ(error.location(), location);
    }

    /// Lets `action` run once, just before the operation happens at the location.
    void justBefore(std::string_view operation, const StorageIRI& location, std::function<void()> action) {
        m_provider.setHook([=, done = false](std::string_view name, const StorageIRI& at) mutable {
            if (name == operation && at == location && !std::exchange(done, true)) {
                action();
            }
        });
    }

    std::vector<std::string> createdFolders(const std::function<void()>& action) {
        std::vector<std::string> created;
        m_provider.setHook([&created](std::string_view name, const StorageIRI& at) {
            if (name == "createFolder") {
                created.push_back(std::string(at.text().begin(), at.text().end()));
            }
        });
        action();
        m_provider.setHook({});
        return created;
    }

    const StorageIRI m_a{u"java://mount/a"};
    const StorageIRI m_b{u"java://mount/a/b"};
    const StorageIRI m_c{u"java://mount/a/b/c"};
    test::InMemoryProvider m_provider;
};

using CreateFolderRecursiveTest = ProviderDefaultsTest;

TEST_F(CreateFolderRecursiveTest, MissingFoldersAreCreatedFromTheTop) {
    const auto created = createdFolders([this] { m_provider.createFolderRecursive(m_c); });
    EXPECT_EQ(created, (std::vector<std::string>{"java://mount/a", "java://mount/a/b", "java://mount/a/b/c"}));
    EXPECT_TRUE(m_provider.folderExists(m_c));
}

TEST_F(CreateFolderRecursiveTest, OnlyWhatIsMissingIsCreated) {
    m_provider.createFolder(m_a);
    const auto created = createdFolders([this] { m_provider.createFolderRecursive(m_b); });
    EXPECT_EQ(created, std::vector<std::string>{"java://mount/a/b"});
}

TEST_F(CreateFolderRecursiveTest, FolderThatExistsIsLeftAsItIs) {
    m_provider.createFolder(m_a);
    m_provider.createFile(m_b);
    EXPECT_TRUE(createdFolders([this] { m_provider.createFolderRecursive(m_a); }).empty());
    EXPECT_TRUE(m_provider.fileExists(m_b));
}

TEST_F(CreateFolderRecursiveTest, RootExists) {
    for (const std::u16string root : {u"java://", u"java:///", u"java://mount", u"java://mount/"}) {
        EXPECT_TRUE(createdFolders([&] { m_provider.createFolderRecursive(StorageIRI(root)); }).empty());
    }
}

TEST_F(CreateFolderRecursiveTest, SpellingOfTheLocationDoesNotMatter) {
    m_provider.createFolderRecursive(StorageIRI(u"java://mount/a//./b/x/../c/"));
    EXPECT_TRUE(m_provider.folderExists(m_c));
    EXPECT_FALSE(m_provider.exists(StorageIRI(u"java://mount/a/b/x")));
}

TEST_F(CreateFolderRecursiveTest, FileAtTheLocationIsNotAFolder) {
    m_provider.createFile(m_a);
    expectError(ErrorCode::NotAFolder, m_a, [this] { m_provider.createFolderRecursive(m_a); });
    EXPECT_TRUE(m_provider.fileExists(m_a));
}

TEST_F(CreateFolderRecursiveTest, FileAboveTheLocationIsNotAFolder) {
    m_provider.createFolder(m_a);
    m_provider.createFile(m_b);
    expectError(ErrorCode::NotAFolder, m_b,
                [this] { m_provider.createFolderRecursive(m_c.getChild(u"d").getChild(u"e")); });
    EXPECT_TRUE(m_provider.fileExists(m_b));
}

TEST_F(CreateFolderRecursiveTest, FolderMadeBySomebodyElseMeanwhileIsNoError) {
    for (const StorageIRI& folder : {m_a, m_b, m_c}) {
        m_provider.setHook({});
        m_provider.createFolderRecursive(m_a);
        m_provider.removeFolderRecursive(m_a);
        justBefore("createFolder", folder, [this, folder] { m_provider.createFolder(folder); });
        EXPECT_NO_THROW(m_provider.createFolderRecursive(m_c)) << folder;
        EXPECT_TRUE(m_provider.folderExists(m_c));
    }
}

TEST_F(CreateFolderRecursiveTest, FileMadeBySomebodyElseMeanwhileIsNotAFolder) {
    justBefore("createFolder", m_b, [this] { m_provider.createFile(m_b); });
    expectError(ErrorCode::NotAFolder, m_b, [this] { m_provider.createFolderRecursive(m_c); });
}

TEST_F(CreateFolderRecursiveTest, FolderRemovedBySomebodyElseMeanwhileIsReported) {
    justBefore("createFolder", m_b, [this] { m_provider.removeFolder(m_a); });
    expectError(ErrorCode::NotFound, m_b, [this] { m_provider.createFolderRecursive(m_c); });
}

TEST_F(CreateFolderRecursiveTest, FolderThatComesAndGoesIsReported) {
    justBefore("createFolder", m_b, [this] { throw Exception(ErrorCode::AlreadyExists, m_b); });
    expectError(ErrorCode::AlreadyExists, m_b, [this] { m_provider.createFolderRecursive(m_c); });
}

TEST_F(CreateFolderRecursiveTest, RefusalIsReportedAndWhatWasCreatedStays) {
    justBefore("createFolder", m_c, [this] { m_provider.setReadOnly(m_b); });
    expectError(ErrorCode::AccessDenied, m_c, [this] { m_provider.createFolderRecursive(m_c.getChild(u"d")); });
    EXPECT_TRUE(m_provider.folderExists(m_b));
    EXPECT_FALSE(m_provider.exists(m_c));
}

TEST_F(CreateFolderRecursiveTest, EmptyLocationIsInvalid) {
    expectError(ErrorCode::InvalidLocation, StorageIRI(), [this] { m_provider.createFolderRecursive(StorageIRI()); });
}

using ExistsTest = ProviderDefaultsTest;

TEST_F(ExistsTest, FilesAndFoldersExist) {
    m_provider.createFolder(m_a);
    m_provider.createFile(m_b);
    EXPECT_TRUE(m_provider.exists(m_a));
    EXPECT_TRUE(m_provider.exists(m_b));
    EXPECT_FALSE(m_provider.exists(m_c));
}

TEST_F(ExistsTest, ExtendedFormTellsWhatIsThere) {
    m_provider.createFolder(m_a);
    m_provider.createFile(m_b);
    EXPECT_EQ(m_provider.existsExtended(m_a), EntryType::Folder);
    EXPECT_EQ(m_provider.existsExtended(m_b), EntryType::File);
    EXPECT_EQ(m_provider.existsExtended(m_c), std::nullopt);
}

TEST_F(ExistsTest, ErrorOfTheBackEndIsReported) {
    m_provider.setHook([](std::string_view, const StorageIRI& at) { throw Exception(ErrorCode::Unavailable, at); });
    expectError(ErrorCode::Unavailable, m_a, [this] { (void)m_provider.exists(m_a); });
    expectError(ErrorCode::Unavailable, m_a, [this] { (void)m_provider.existsExtended(m_a); });
}

class UnsupportedTest : public ProviderDefaultsTest {
protected:
    void expectNotSupported(const std::function<void()>& action) const {
        expectError(ErrorCode::NotSupported, m_a, action);
    }
};

TEST_F(UnsupportedTest, OperationsNameTheLocation) {
    expectNotSupported([this] { m_provider.setWritable(m_a, true); });
    expectNotSupported([this] { (void)m_provider.getFilenameSensitivity(m_a); });
}

TEST_F(UnsupportedTest, OperationWithoutALocationNamesNone) {
    expectError(ErrorCode::NotSupported, StorageIRI(), [this] { (void)m_provider.getProviderCacheUsage(); });
}

TEST_F(ProviderDefaultsTest, ShutdownIsSilentAndLeavesTheProviderUsable) {
    m_provider.createFolder(m_a);
    EXPECT_NO_THROW(m_provider.shutdown());
    EXPECT_NO_THROW(m_provider.shutdown());
    EXPECT_TRUE(m_provider.folderExists(m_a));
}

}  // namespace
}  // namespace foundation::storage::provider
