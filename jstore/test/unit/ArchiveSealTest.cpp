#include "java/ArchiveSeal.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>

#include "support/TemporaryFolder.h"

namespace jstore {

namespace fs = std::filesystem;

namespace {

class ArchiveSealTest : public ::testing::Test {
protected:
    /// A sealed file of the content.
    [[nodiscard]] fs::path sealed(const std::string& content) const {
        const auto file = m_folder.file("file", content);
        seal(file);
        return file;
    }
    void write(const std::string& content) const {
        std::ofstream(m_folder / "file", std::ios::binary | std::ios::trunc) << content;
    }

    test::TemporaryFolder m_folder;
};

TEST_F(ArchiveSealTest, SealFitsWhatWasSealed) {
    for (const std::size_t size : {0UL, 1UL, 31UL, 32UL, 33UL, 131071UL, 131072UL, 131073UL, 500000UL}) {
        EXPECT_TRUE(isSealed(sealed(std::string(size, 'a')))) << size;
    }
}

TEST_F(ArchiveSealTest, ContentStandsBeforeTheSeal) {
    EXPECT_TRUE(test::contentOf(sealed("content")).starts_with("content"));
}

TEST_F(ArchiveSealTest, EachBitCounts) {
    const auto file = sealed("some content that is longer than one round of all lanes");
    const auto whole = test::contentOf(file);
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        auto other = whole;
        other[bit / 8] = static_cast<char>(other[bit / 8] ^ (1 << (bit % 8)));
        write(other);
        EXPECT_FALSE(isSealed(file)) << "bit " << bit;
    }
    write(whole);
    EXPECT_TRUE(isSealed(file));
}

TEST_F(ArchiveSealTest, PortionsThatChangePlacesCount) {
    const auto file = sealed(std::string(131072, 'a') + std::string(131072, 'b'));
    const auto whole = test::contentOf(file);
    write(whole.substr(131072, 131072) + whole.substr(0, 131072) + whole.substr(262144));
    EXPECT_FALSE(isSealed(file));
}

TEST_F(ArchiveSealTest, EachLengthCounts) {
    const auto file = sealed("content");
    const auto whole = test::contentOf(file);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        write(whole.substr(0, size));
        EXPECT_FALSE(isSealed(file)) << size;
        write(whole.substr(whole.size() - size));
        EXPECT_FALSE(isSealed(file)) << size;
    }
    write(whole + "more");
    EXPECT_FALSE(isSealed(file));
}

TEST_F(ArchiveSealTest, WhatIsNoFileIsNotSealed) {
    EXPECT_FALSE(isSealed(m_folder / "nothing"));
    EXPECT_FALSE(isSealed(m_folder.path()));
    ASSERT_EQ(0, ::mkfifo((m_folder / "pipe").c_str(), 0600));
    EXPECT_FALSE(isSealed(m_folder / "pipe"));
    EXPECT_FALSE(isSealed(""));
}

TEST_F(ArchiveSealTest, FileThatIsMissingIsNamed) {
    try {
        seal(m_folder / "nothing");
        FAIL() << "something was sealed";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("nothing"));
    }
}

}  // namespace

}  // namespace jstore
