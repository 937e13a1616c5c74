#include <sys/stat.h>

#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

class TouchTest : public ::testing::Test {
protected:
    TemporaryFolder m_folder;
};

TEST_F(TouchTest, FileIsCreatedInSilence) {
    EXPECT_THAT(jstore({"touch", m_folder.location("a"), m_folder.location("b")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_regular_file(m_folder / "a"));
    EXPECT_EQ(0U, fs::file_size(m_folder / "b"));
}

TEST_F(TouchTest, FileThatExistsStaysAsItIs) {
    const auto file = m_folder.file("a", "content");
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(24);
    fs::last_write_time(file, longAgo);
    EXPECT_THAT(jstore({"touch", m_folder.location("a")}), IsSilentlyDone());
    EXPECT_EQ("content", contentOf(file));
    EXPECT_EQ(longAgo, fs::last_write_time(file));
}

TEST_F(TouchTest, FolderThatExistsIsNoError) {
    EXPECT_THAT(jstore({"touch", "java://" + m_folder.path().string()}), IsSilentlyDone());
}

TEST_F(TouchTest, MissingFolderIsThree) {
    EXPECT_THAT(jstore({"touch", m_folder.location("a/b")}),
                FailsWith(3, "jstore: NotFound: " + m_folder.location("a/b") + ": has no parent folder"));
}

class TouchDateTest : public TouchTest {
protected:
    static constexpr long long Time = 981173106;  // 2001-02-03T04:05:06Z

    [[nodiscard]] long long secondsOf(std::string_view name) const {
        struct stat status {};
        return ::stat((m_folder / name).c_str(), &status) == 0 ? static_cast<long long>(status.st_mtime) : -1;
    }
};

TEST_F(TouchDateTest, TimeIsSetOnNewAndOldFilesAndFolders) {
    m_folder.file("old", "content");
    m_folder.folder("d");
    EXPECT_THAT(jstore({"touch", "-d", "2001-02-03T04:05:06Z", m_folder.location("new"), m_folder.location("old"),
                        m_folder.location("d")}),
                IsSilentlyDone());
    for (const auto* const name : {"new", "old", "d"}) {
        EXPECT_EQ(Time, secondsOf(name)) << name;
    }
    EXPECT_EQ("content", contentOf(m_folder / "old"));
}

TEST_F(TouchDateTest, TimeWithoutAZoneIsLocal) {
    EXPECT_THAT(Jstore({"touch", "--date", "2001-02-03 06:05:06", m_folder.location("a")}).with("TZ", "XYZ-2").run(),
                IsSilentlyDone());
    EXPECT_EQ(Time, secondsOf("a"));
}

TEST_F(TouchDateTest, WrongTimeStartsNoJava) {
    EXPECT_THAT(jstore({"--java-home", "/nonexistent", "touch", "-d", "soon", m_folder.location("a")}),
                FailsWith(2, ::testing::HasSubstr("soon")));
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

}  // namespace

}  // namespace jstore::test
