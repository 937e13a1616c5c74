// The operations on real files, through the shared library and the ready back end for the default file system.
#include <gmock/gmock.h>

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "fl/i18n/text.h"
#include "foundation/storage/provider/IConfigurableProvider.h"
#include "provider/ThrownErrors.h"
#include "storage/javaprovider/EntryPoints.h"
#include "support/Eventually.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {
namespace {

namespace fs = std::filesystem;
using foundation::storage::events::Kind;
using foundation::storage::provider::EntryType;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;
using foundation::storage::provider::StorageIRI;

/// A new folder below the system's folder for temporary files, removed with all it holds at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (fs::temp_directory_path() / "javaprovider-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot make " + pattern);
        }
        m_path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;  // what is left behind is in the folder for temporary files
        fs::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const fs::path& path() const noexcept { return m_path; }

private:
    fs::path m_path;
};

std::string contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class NioEndToEndTest : public RecordedJvmTest {
protected:
    void SetUp() override {
        RecordedJvmTest::SetUp();
        provider.reset(buildProvider(jvm(), "com/corvallen/storage/backend/nio/NioProvider"));
        recorder.keepCalls(false);
    }

    /// The location of a path below the temporary folder.
    [[nodiscard]] StorageIRI at(const std::string& name) const {
        const StorageIRI parent(u"java://" + fl::i18n::to_ustring(folder.path().string()));
        return parent.getChild(fl::i18n::to_ustring(name));
    }
    [[nodiscard]] StorageIRI at(const std::string& parent, const std::string& name) const {
        return at(parent).getChild(fl::i18n::to_ustring(name));
    }
    [[nodiscard]] fs::path file(const std::string& name, const std::string& content = "content") const {
        std::ofstream(folder.path() / name, std::ios::binary) << content;
        return folder.path() / name;
    }
    [[nodiscard]] fs::path subfolder(const std::string& name) const {
        fs::create_directories(folder.path() / name);
        return folder.path() / name;
    }
    /// The action fails with that code, about that location.
    void expectError(ErrorCode code, const StorageIRI& about, const std::function<void()>& action) const {
        const auto error = thrownBy<ProviderError>(action);
        ASSERT_TRUE(error);
        EXPECT_EQ(toString(error->code()), toString(code));
        EXPECT_EQ(error->location().normalized(), about.normalized());
    }

    const TemporaryFolder folder;
    std::unique_ptr<IProvider> provider;
};

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

// ---- names ----

class NameTest : public NioEndToEndTest, public ::testing::WithParamInterface<std::pair<const char*, const char*>> {
protected:
    [[nodiscard]] static std::string name() { return GetParam().second; }
    [[nodiscard]] fs::path path() const { return folder.path() / name(); }
};

TEST_P(NameTest, FileIsCreatedFoundMovedAndRemoved) {
    provider->createFile(at(name()));
    EXPECT_TRUE(fs::is_regular_file(path()));
    EXPECT_TRUE(provider->fileExists(at(name())));
    EXPECT_FALSE(provider->folderExists(at(name())));
    provider->moveFile(at(name()), at(name() + "2"));
    EXPECT_FALSE(fs::exists(path()));
    EXPECT_TRUE(fs::exists(folder.path() / (name() + "2")));
    provider->removeFile(at(name() + "2"));
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_P(NameTest, FolderIsCreatedFoundMovedAndRemoved) {
    provider->createFolder(at(name()));
    EXPECT_TRUE(fs::is_directory(path()));
    EXPECT_TRUE(provider->folderExists(at(name())));
    EXPECT_FALSE(provider->fileExists(at(name())));
    provider->createFile(at(name(), name()));
    provider->moveFolder(at(name()), at(name() + "2"));
    EXPECT_TRUE(provider->fileExists(at(name() + "2", name())));
    provider->removeFolderRecursive(at(name() + "2"));
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_P(NameTest, ErrorNamesTheLocation) {
    const auto error = thrownBy<ProviderError>([&] { provider->removeFile(at(name())); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::NotFound);
    EXPECT_EQ(fl::i18n::to_string(error->location().getName()), name());
}

INSTANTIATE_TEST_SUITE_P(Names, NameTest,
                         ::testing::Values(std::pair{"Plain", "plain.txt"}, std::pair{"Space", "a name with blanks"},
                                           std::pair{"Percent", "100%"}, std::pair{"Escape", "a%20b"},
                                           std::pair{"Hash", "c#"}, std::pair{"Question", "why?"},
                                           std::pair{"Umlauts", "\u00FCml\u00E4ute"}, std::pair{"Emoji", "\U0001F600"},
                                           std::pair{"Quotes", "\"quoted\" 'too'"}, std::pair{"Brackets", "[a]{b}|^`"},
                                           std::pair{"Colon", "a:b"}, std::pair{"Backslash", "a\\b"},
                                           std::pair{"Plus", "a+b&c=d;e"}, std::pair{"Dots", "...x"}),
                         [](const auto& tested) { return std::string(tested.param.first); });

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
