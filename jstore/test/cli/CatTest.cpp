#include "support/FolderTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

using ::testing::HasSubstr;

namespace {

/// The bytes of base64 text; a reader of its own, so that it shares no mistake with what wrote it.
std::string decoded(const std::string& text) {
    const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char c : text) {
        if (c == '=') {
            break;
        }
        bits = bits << 6U | static_cast<unsigned>(digits.find(c));
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFFU);
        }
    }
    return bytes;
}

class CatTest : public FolderTest {};

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
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_EQ(outcome.out, "content");
    EXPECT_EQ(outcome.err, "jstore: NotFound: " + at("none") + '\n');
}

TEST_F(CatTest, FolderIsNoFile) {
    EXPECT_THAT(jstore({"cat", "java:///tmp"}), FailsWith(1, HasSubstr("NotAFile: java:///tmp")));
}

TEST_F(CatTest, JsonHoldsTheBytesInPortions) {
    const std::string bytes(300'000, '\xFF');
    m_folder.file("a", bytes);
    m_folder.file("empty");
    const auto objects = objectsOf(jstore({"--json", "cat", at("a"), at("empty")}));
    ASSERT_GE(objects.size(), 4U);
    std::size_t offset = 0;
    for (std::size_t i = 0; i + 2 < objects.size(); ++i) {
        EXPECT_EQ(objects[i]["offset"], offset);
        const auto portion = decoded(objects[i]["content"]);
        EXPECT_TRUE(portion == bytes.substr(offset, portion.size()));
        offset += portion.size();
    }
    EXPECT_EQ(offset, bytes.size());
    EXPECT_EQ(objects[objects.size() - 2],
              nlohmann::json({{"verb", "cat"}, {"location", at("a")}, {"bytes", bytes.size()}, {"ok", true}}));
    EXPECT_EQ(objects.back()["bytes"], 0);
}

TEST_F(CatTest, OutputThatFailsIsTold) {
    m_folder.file("a", "content");
    EXPECT_THAT(Jstore({"cat", at("a")}).outputTo(Jstore::Output::Full).run(),
                FailsWith(1, "jstore: standard output: No space left on device"));
}

}  // namespace

}  // namespace jstore::test
