#include <sys/stat.h>

#include "support/FolderTest.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;

namespace {

class TouchTest : public FolderTest {};

TEST_F(TouchTest, FileIsCreatedInSilence) {
    EXPECT_THAT(jstore({"touch", at("a"), at("b")}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_regular_file(m_folder / "a"));
    EXPECT_EQ(fs::file_size(m_folder / "b"), 0U);
}

TEST_F(TouchTest, FileThatExistsStaysAsItIs) {
    const auto file = m_folder.file("a", "content");
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(24);
    fs::last_write_time(file, longAgo);
    EXPECT_THAT(jstore({"touch", at("a")}), IsSilentlyDone());
    EXPECT_EQ(contentOf(file), "content");
    EXPECT_EQ(fs::last_write_time(file), longAgo);
}

TEST_F(TouchTest, FolderThatExistsIsNoError) {
    EXPECT_THAT(jstore({"touch", "java://" + m_folder.path().string()}), IsSilentlyDone());
}

TEST_F(TouchTest, MissingFolderIsThree) {
    EXPECT_THAT(jstore({"touch", at("a/b")}),
                FailsWith(3, "jstore: NotFound: " + at("a/b") + ": has no parent folder"));
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
    EXPECT_THAT(jstore({"touch", "-d", "2001-02-03T04:05:06Z", at("new"), at("old"), at("d")}), IsSilentlyDone());
    for (const auto* const name : {"new", "old", "d"}) {
        EXPECT_EQ(secondsOf(name), Time) << name;
    }
    EXPECT_EQ(contentOf(m_folder / "old"), "content");
}

TEST_F(TouchDateTest, TimeWithoutAZoneIsLocal) {
    EXPECT_THAT(Jstore({"touch", "--date", "2001-02-03 06:05:06", at("a")}).with("TZ", "XYZ-2").run(),
                IsSilentlyDone());
    EXPECT_EQ(secondsOf("a"), Time);
}

TEST_F(TouchDateTest, WrongTimeStartsNoJava) {
    EXPECT_THAT(jstore({"--java-home", "/nonexistent", "touch", "-d", "soon", at("a")}),
                FailsWith(2, ::testing::HasSubstr("soon")));
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

}  // namespace

}  // namespace jstore::test
