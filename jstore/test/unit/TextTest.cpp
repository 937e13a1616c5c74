#include "base/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace jstore {

namespace {

TEST(TextTest, Utf8IsTold) {
    EXPECT_TRUE(isUtf8(""));
    EXPECT_TRUE(isUtf8("plain"));
    EXPECT_TRUE(isUtf8("gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80"));
    EXPECT_TRUE(isUtf8("\xEF\xBF\xBD"));
}

TEST(TextTest, OtherBytesAreNotUtf8) {
    EXPECT_FALSE(isUtf8("gr\xFC\xDF"));
    EXPECT_FALSE(isUtf8("\xC3"));
    EXPECT_FALSE(isUtf8("\xC0\xAF"));
    EXPECT_FALSE(isUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(isUtf8("\xF4\x90\x80\x80"));
}

TEST(TextTest, SeveralLinesBecomeOne) {
    EXPECT_EQ(oneLine("java.lang.Error: one\n\ttwo\r\n\tat x\n"), "java.lang.Error: one two at x");
    EXPECT_EQ(oneLine("\n \t"), "");
    EXPECT_EQ(oneLine("  a   b  "), "a b");
}

TEST(TextTest, OneLineIsUtf8) { EXPECT_EQ(oneLine("a\xFF"), "a\xEF\xBF\xBD"); }

TEST(TextTest, PrintableKeepsNamesApart) {
    EXPECT_EQ(printable("a\nb"), "a%0Ab");
    EXPECT_EQ(printable("a\tb"), "a%09b");
    EXPECT_EQ(printable("a\x1B"
                        "b\x7F"),
              "a%1Bb%7F");
    EXPECT_EQ(printable("a  b%20"), "a  b%20");
    EXPECT_EQ(printable("\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
}

/// What a terminal may take for more than text, and how it stands in a URI.
const std::vector<std::pair<std::string, std::string>> Unsafe = {{"\x01", "%01"},
                                                                 {"\n", "%0A"},
                                                                 {"\x1F", "%1F"},
                                                                 {"\x7F", "%7F"},
                                                                 {"\xC2\x80", "%C2%80"},
                                                                 {"\xC2\x9B", "%C2%9B"},
                                                                 {"\xC2\x9F", "%C2%9F"},
                                                                 {"\xD8\x9C", "%D8%9C"},
                                                                 {"\xE2\x80\x8E", "%E2%80%8E"},
                                                                 {"\xE2\x80\x8F", "%E2%80%8F"},
                                                                 {"\xE2\x80\xA8", "%E2%80%A8"},
                                                                 {"\xE2\x80\xA9", "%E2%80%A9"},
                                                                 {"\xE2\x80\xAA", "%E2%80%AA"},
                                                                 {"\xE2\x80\xAE", "%E2%80%AE"},
                                                                 {"\xE2\x81\xA6", "%E2%81%A6"},
                                                                 {"\xE2\x81\xA9", "%E2%81%A9"}};

TEST(TextTest, UnsafeCharactersAreEncoded) {
    for (const auto& [raw, encoded] : Unsafe) {
        EXPECT_EQ(printable("a" + raw + "b"), "a" + encoded + "b");
        EXPECT_EQ(printableName("a" + raw + "b"), "a" + encoded + "b");
        EXPECT_EQ(oneLine("a" + raw + "b").find(raw), std::string::npos) << encoded;
        EXPECT_EQ(printableJson("\"" + raw + "\"").find(raw), std::string::npos) << encoded;
    }
}

TEST(TextTest, OrdinaryCharactersStay) {
    for (const std::string text : {"e\xCC\x81", "\xE6\x97\xA5\xE6\x9C\xAC", "\xD7\xA9\xD7\x9C", "\xD8\xB9", "\xC2\xA0",
                                   "\xE2\x80\x8D", "\xE2\x80\xA7", "\xE2\x81\xAA", "\xEE\xBF\xA9", "~ \\"}) {
        EXPECT_EQ(printable(text), text);
        EXPECT_EQ(printableName(text), text);
        EXPECT_EQ(oneLine(text), text);
        EXPECT_EQ(printableJson(text), text);
    }
}

TEST(TextTest, NamesWithPercentSignsAreKeptApart) {
    EXPECT_EQ(printableName("a%0Ab"), "a%250Ab");
    EXPECT_EQ(printableName("%e9%E9"), "%25e9%25E9");
    EXPECT_EQ(printableName("100% %zz %4 %"), "100% %zz %4 %");
    EXPECT_EQ(printable("a%0Ab"), "a%0Ab");
}

TEST(TextTest, JsonMeansTheSame) {
    EXPECT_EQ(printableJson("{\"a\":\"\xC2\x9B\xE2\x80\xAE\x7F\"}"), R"({"a":"\u009b\u202e\u007f"})");
}

}  // namespace

}  // namespace jstore
