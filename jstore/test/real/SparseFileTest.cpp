#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>

#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t TwoGiB = std::uint64_t{2} << 30;
constexpr std::uint64_t MiB = std::uint64_t{1} << 20;

class SparseFileTest : public ::testing::Test {
protected:
    void write(std::string_view name, std::uint64_t position, std::string_view bytes) const {
        std::fstream file(m_folder / name, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(static_cast<std::streamoff>(position));
        file << bytes;
        ASSERT_TRUE(file.flush());
    }

    [[nodiscard]] std::string read(std::string_view name, std::uint64_t position, std::size_t count) const {
        std::ifstream file(m_folder / name, std::ios::binary);
        std::string bytes(count, '?');
        file.seekg(static_cast<std::streamoff>(position));
        file.read(bytes.data(), static_cast<std::streamsize>(count));
        return bytes.substr(0, static_cast<std::size_t>(file.gcount()));
    }

    /// The bytes that a file takes on the disk.
    [[nodiscard]] std::uint64_t occupied(std::string_view name) const {
        struct stat status {};
        EXPECT_EQ(::stat((m_folder / name).c_str(), &status), 0);
        return static_cast<std::uint64_t>(status.st_blocks) * 512;
    }

    /// Makes a file that is a hole of this size.
    void makeHole(std::string_view name, std::uint64_t size) const {
        m_folder.file(name);
        fs::resize_file(m_folder / name, size);
    }

    /// The most memory this process has held. What a child is said to have held begins with it, so it is reset here.
    [[nodiscard]] static long ownPeakKiB() {
        std::ofstream("/proc/self/clear_refs") << 5;
        rusage used{};
        EXPECT_EQ(::getrusage(RUSAGE_SELF, &used), 0);
        return used.ru_maxrss;
    }

    [[nodiscard]] Outcome copy(const std::string& from, const std::string& to) const {
        return jstore({"cp", m_folder.location(from), m_folder.location(to)});
    }

    TemporaryFolder m_folder;
};

TEST_F(SparseFileTest, TwoGiBAreCopiedWithinTheMemoryOfASmallCopyAndStaySparse) {
    m_folder.file("small", "few bytes");
    const auto own = ownPeakKiB();
    const auto small = copy("small", "small copy");
    ASSERT_THAT(small, IsSilentlyDone());
    ASSERT_GT(small.peakKiB, own) << "what is measured is this process and not the copy";

    makeHole("large", TwoGiB);
    write("large", 0, "beginning");
    write("large", TwoGiB / 2 - 3, "middle");
    write("large", TwoGiB - 3, "end");
    const auto large = copy("large", "large copy");
    ASSERT_THAT(large, IsSilentlyDone());

    ASSERT_EQ(fs::file_size(m_folder / "large copy"), TwoGiB);
    EXPECT_EQ(read("large copy", 0, 10), std::string("beginning") + '\0');
    EXPECT_EQ(read("large copy", TwoGiB / 2 - 4, 8), '\0' + std::string("middle") + '\0');
    EXPECT_EQ(read("large copy", TwoGiB - 4, 9), '\0' + std::string("end"));
    EXPECT_LT(occupied("large copy"), 2 * MiB);
    std::printf("most memory: %ld KiB for the small copy, %ld KiB for the large one\n", small.peakKiB, large.peakKiB);
    EXPECT_LT(large.peakKiB, small.peakKiB + 32 * 1024);
}

TEST_F(SparseFileTest, HoleAtTheEndHasItsLength) {
    makeHole("hole", 5 * MiB + 7);
    write("hole", 0, "x");
    ASSERT_THAT(copy("hole", "copy"), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "copy"), contentOf(m_folder / "hole"));
    EXPECT_LT(occupied("copy"), MiB);
}

TEST_F(SparseFileTest, NothingButAHoleHasItsLength) {
    makeHole("hole", 3 * MiB);
    ASSERT_THAT(copy("hole", "copy"), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "copy"), contentOf(m_folder / "hole"));
    EXPECT_LT(occupied("copy"), MiB);
}

TEST_F(SparseFileTest, HoleReplacesOldContent) {
    makeHole("hole", MiB);
    m_folder.file("old", std::string(2 * MiB, 'x'));
    ASSERT_THAT(jstore({"cp", "--replace", m_folder.location("hole"), m_folder.location("old")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "old"), std::string(MiB, '\0'));
}

TEST_F(SparseFileTest, ZerosArriveInAnArchive) {
    makeHole("hole", 2 * MiB);
    write("hole", MiB, "middle");
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    const auto mount = "zip=jar:file://" + archive.string();
    ASSERT_THAT(jstore({"--mount", mount, "cp", m_folder.location("hole"), "java://zip/hole"}), IsSilentlyDone());
    ASSERT_THAT(jstore({"--mount", mount, "cp", "java://zip/hole", m_folder.location("back")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "back"), contentOf(m_folder / "hole"));
}

}  // namespace

}  // namespace jstore::test
