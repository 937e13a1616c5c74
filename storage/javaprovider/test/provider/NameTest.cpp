// Names of every kind come through to the file system and back.
#include <utility>

#include "provider/NioEndToEndTest.h"

namespace storage::javaprovider::test {
namespace {

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

}  // namespace
}  // namespace storage::javaprovider::test
