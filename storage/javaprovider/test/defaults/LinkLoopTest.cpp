// A folder that holds links to itself: every step down through one finds them all again.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "defaults/JavaStorage.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {
namespace {

class LinkLoopTest : public JvmTest {
protected:
    void SetUp() override {
        JvmTest::SetUp();
        const std::u16string text = storage.folder().text();
        folder = std::filesystem::path(text.substr(text.find(u"//") + 2));
        std::filesystem::create_directory(folder / "real");
        std::filesystem::create_directory_symlink(".", folder / "loop");
        std::filesystem::create_directory_symlink("..", folder / "real" / "up");
    }

    JavaStorage storage{"DefaultFileSystem"};
    std::filesystem::path folder;
};

TEST_F(LinkLoopTest, RecursiveListingGivesLinksAndEntersNone) {
    constexpr std::size_t Enough = 1000;
    std::vector<std::u16string> names;
    for (const auto paths = storage.provider().listAllRecursiveNamesOnly(storage.folder());
         paths->hasMore() && names.size() < Enough;) {
        paths->advance();
        names.push_back(paths->getCurrent());
    }
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::u16string>{u"loop", u"real", u"real/up"}));
}

TEST_F(LinkLoopTest, LinkThatIsAskedForIsEntered) {
    const auto names = storage.provider().listAllRecursiveNamesOnly(storage.folder().getChild(u"loop"), u"up");
    ASSERT_TRUE(names->hasMore());
    names->advance();
    EXPECT_EQ(names->getCurrent(), u"real/up");
}

}  // namespace
}  // namespace storage::javaprovider::test
