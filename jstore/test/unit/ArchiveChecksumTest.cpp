#include "java/ArchiveChecksum.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>

#include "support/TemporaryFolder.h"

namespace jstore {

namespace fs = std::filesystem;

namespace {

class ArchiveChecksumTest : public ::testing::Test {
protected:
    /// A file of the content and its checksum.
    [[nodiscard]] fs::path withChecksum(const std::string& content) const {
        const auto file = m_folder.file("file", content);
        appendChecksum(file);
        return file;
    }
    void write(const std::string& content) const {
        std::ofstream(m_folder / "file", std::ios::binary | std::ios::trunc) << content;
    }

    test::TemporaryFolder m_folder;
};

TEST_F(ArchiveChecksumTest, ChecksumFitsItsFile) {
    for (const std::size_t size : {0UL, 1UL, 31UL, 32UL, 33UL, 131071UL, 131072UL, 131073UL, 500000UL}) {
        EXPECT_TRUE(hasValidChecksum(withChecksum(std::string(size, 'a')))) << size;
    }
}

TEST_F(ArchiveChecksumTest, ContentStandsBeforeTheChecksum) {
    EXPECT_TRUE(test::contentOf(withChecksum("content")).starts_with("content"));
}

TEST_F(ArchiveChecksumTest, EachBitCounts) {
    const auto file = withChecksum("some content that is longer than one round of all lanes");
    const auto whole = test::contentOf(file);
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        auto other = whole;
        other[bit / 8] = static_cast<char>(other[bit / 8] ^ (1 << (bit % 8)));
        write(other);
        EXPECT_FALSE(hasValidChecksum(file)) << "bit " << bit;
    }
    write(whole);
    EXPECT_TRUE(hasValidChecksum(file));
}

TEST_F(ArchiveChecksumTest, PortionsThatChangePlacesCount) {
    const auto file = withChecksum(std::string(131072, 'a') + std::string(131072, 'b'));
    const auto whole = test::contentOf(file);
    write(whole.substr(131072, 131072) + whole.substr(0, 131072) + whole.substr(262144));
    EXPECT_FALSE(hasValidChecksum(file));
}

TEST_F(ArchiveChecksumTest, EachLengthCounts) {
    const auto file = withChecksum("content");
    const auto whole = test::contentOf(file);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        write(whole.substr(0, size));
        EXPECT_FALSE(hasValidChecksum(file)) << size;
        write(whole.substr(whole.size() - size));
        EXPECT_FALSE(hasValidChecksum(file)) << size;
    }
    write(whole + "more");
    EXPECT_FALSE(hasValidChecksum(file));
}

TEST_F(ArchiveChecksumTest, WhatIsNoFileHasNoChecksum) {
    EXPECT_FALSE(hasValidChecksum(m_folder / "nothing"));
    EXPECT_FALSE(hasValidChecksum(m_folder.path()));
    ASSERT_EQ(::mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(hasValidChecksum(m_folder / "pipe"));
    EXPECT_FALSE(hasValidChecksum(""));
}

TEST_F(ArchiveChecksumTest, FileThatIsMissingIsNamed) {
    try {
        appendChecksum(m_folder / "nothing");
        FAIL() << "a checksum was appended";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("nothing"));
    }
}

}  // namespace

}  // namespace jstore
