#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::HasSubstr;

namespace {

class CatTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string at(std::string_view name) const { return m_folder.location(name); }

    TemporaryFolder m_folder;
};

TEST_F(CatTest, BytesComeAsTheyAre) {
    std::string bytes;
    for (int i = 0; i < 300'000; ++i) {
        bytes += static_cast<char>(i * 7 % 256);
    }
    m_folder.file("a", bytes);
    m_folder.file("b", std::string("\0\xFF\r\n", 4));
    m_folder.file("empty");
    EXPECT_THAT(jstore({"cat", at("a"), at("empty"), at("b")}), Prints(bytes + std::string("\0\xFF\r\n", 4)));
}

TEST_F(CatTest, MissingIsThreeAndTheOthersFollow) {
    m_folder.file("a", "content");
    const auto outcome = jstore({"cat", at("none"), at("a")});
    EXPECT_EQ(6, outcome.exitCode);
    EXPECT_EQ("content", outcome.out);
    EXPECT_EQ("jstore: NotFound: " + at("none") + '\n', outcome.err);
}

TEST_F(CatTest, FolderIsNoFile) {
    EXPECT_THAT(jstore({"cat", "java:///tmp"}), FailsWith(1, HasSubstr("NotAFile: java:///tmp")));
}

TEST_F(CatTest, JsonIsRefusedBeforeJavaStarts) {
    EXPECT_THAT(jstore({"--java-home", "/nonexistent", "--json", "cat", "a"}), FailsWith(2, HasSubstr("--json")));
}

TEST_F(CatTest, OutputThatFailsIsTold) {
    m_folder.file("a", "content");
    EXPECT_THAT(Jstore({"cat", at("a")}).outputTo(Jstore::Output::Full).run(),
                FailsWith(1, "jstore: standard output: No space left on device"));
}

}  // namespace

}  // namespace jstore::test
