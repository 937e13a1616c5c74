#include "Text.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ("java.lang.Error: one two at x", oneLine("java.lang.Error: one\n\ttwo\r\n\tat x\n"));
    EXPECT_EQ("", oneLine("\n \t"));
    EXPECT_EQ("a b", oneLine("  a   b  "));
}

TEST(TextTest, OneLineIsUtf8) { EXPECT_EQ("a\xEF\xBF\xBD", oneLine("a\xFF")); }

TEST(TextTest, PrintableKeepsNamesApart) {
    EXPECT_EQ("a%0Ab", printable("a\nb"));
    EXPECT_EQ("a%09b", printable("a\tb"));
    EXPECT_EQ("a%1Bb%7F", printable("a\x1B"
                                    "b\x7F"));
    EXPECT_EQ("a  b%20", printable("a  b%20"));
    EXPECT_EQ("\xF0\x9F\x98\x80", printable("\xF0\x9F\x98\x80"));
}

}  // namespace

}  // namespace jstore
