#include "fl/i18n/text.h"

#include <gtest/gtest.h>
#include <boost/locale/encoding_errors.hpp>

#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "fl/i18n/converter.h"

namespace fl::i18n {
namespace {

namespace conv = boost::locale::conv;
using std::string_literals::operator""s;

const std::u16string High(1, char16_t{0xD83D});
const std::u16string Low(1, char16_t{0xDE00});

TEST(TextTest, WellFormedTextSurvivesBothWays) {
    const std::vector<std::pair<std::u16string, std::string>> cases = {
        {u"", ""},
        {u"plain ASCII ~\x7f", "plain ASCII ~\x7f"},
        {u"\u0080\u07ff", "\xC2\x80\xDF\xBF"},
        {u"\u0800\ud7ff\ue000\uffff", "\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"},
        {u"\U00010000\U0001F600\U0010FFFF", "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
        {u"a\u00e4b\u20acc\U0001F600d",
         "a\xC3\xA4"
         "b\xE2\x82\xAC"
         "c\xF0\x9F\x98\x80"
         "d"},
        {u"a\0b\0"s, "a\0b\0"s},
        {u"\ufeffx\ufffd", "\xEF\xBB\xBFx\xEF\xBF\xBD"},
    };
    for (const auto& [wide, narrow] : cases) {
        EXPECT_EQ(to_string(wide), narrow);
        EXPECT_EQ(to_ustring(narrow), wide);
    }
}

TEST(TextTest, LoneSurrogatesBecomeTheReplacementCharacter) {
    EXPECT_EQ(to_string(High), "\xEF\xBF\xBD");
    EXPECT_EQ(to_string(Low), "\xEF\xBF\xBD");
    EXPECT_EQ(to_string(High + u"a"),
              "\xEF\xBF\xBD"
              "a");
    EXPECT_EQ(to_string(u"a" + Low + u"b"),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(to_string(Low + High), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(to_string(High + High + Low), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(TextTest, EachLongestPartOfABrokenSequenceBecomesOneReplacementCharacter) {
    const std::vector<std::pair<std::string, std::u16string>> cases = {
        {"\x80", u"\ufffd"},
        {"a\xBF"
         "b",
         u"a\ufffdb"},
        {"\xC0\xAF", u"\ufffd\ufffd"},
        {"\xC1\x81", u"\ufffd\ufffd"},
        {"\xE0\x80\xBF", u"\ufffd\ufffd\ufffd"},
        {"\xE0\x9F\xBF", u"\ufffd\ufffd\ufffd"},
        {"\xF0\x8F\xBF\xBF", u"\ufffd\ufffd\ufffd\ufffd"},
        {"\xED\xA0\x80", u"\ufffd\ufffd\ufffd"},
        {"\xED\xA0\xBD\xED\xB8\x80", u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"},
        {"\xF4\x90\x80\x80", u"\ufffd\ufffd\ufffd\ufffd"},
        {"\xF5\x80\xFE\xFF", u"\ufffd\ufffd\ufffd\ufffd"},
        {"\xC3", u"\ufffd"},
        {"\xC3"
         "A",
         u"\ufffdA"},
        {"\xC3\xC3\xA4", u"\ufffd\u00e4"},
        {"\xE2\x82", u"\ufffd"},
        {"\xE2\x82"
         "A",
         u"\ufffdA"},
        {"\xE2\x82\xE2\x82\xAC", u"\ufffd\u20ac"},
        {"\xF0\x9F\x98", u"\ufffd"},
        {"\xF0\x9F\x98\xF0\x9F\x98\x80", u"\ufffd\U0001F600"},
        {"a\xF1\x80\x80\xE1\x80\xC2"
         "b\x80"
         "c\x80\xBF"
         "d",
         u"a\ufffd\ufffd\ufffdb\ufffdc\ufffd\ufffdd"},
    };
    for (const auto& [narrow, wide] : cases) {
        EXPECT_EQ(to_ustring(narrow), wide) << testing::PrintToString(narrow);
    }
}

TEST(TextTest, EveryCodePointSurvivesBothWays) {
    for (char32_t point = 0; point <= 0x10FFFF; ++point) {
        if (point >= 0xD800 && point <= 0xDFFF) {
            continue;
        }
        std::u16string wide;
        if (point < 0x10000) {
            wide.push_back(static_cast<char16_t>(point));
        } else {
            wide.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
            wide.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        }
        ASSERT_EQ(to_ustring(to_string(wide)), wide) << std::hex << static_cast<std::uint32_t>(point);
    }
}

TEST(TextTest, BigTextIsConvertedWhole) {
    std::u16string wide;
    std::string narrow;
    for (int i = 0; i < 200000; ++i) {
        wide += u"ab\u00e4";
        narrow += "ab\xC3\xA4";
    }
    EXPECT_EQ(to_string(wide), narrow);
    EXPECT_EQ(to_ustring(narrow), wide);
}

TEST(TextTest, InsertionIsFormattedOnce) {
    using fl::i18n::operator<<;
    std::ostringstream out;
    out << std::setfill('.') << std::setw(6) << u"\u00e4b"s << u"c"s << std::left << std::setw(3) << u"d"s << '|';
    EXPECT_EQ(out.str(),
              "...\xC3\xA4"
              "bcd..|");
    EXPECT_EQ(out.width(), 0);
}

TEST(TextTest, InsertionIntoABrokenStreamWritesNothing) {
    using fl::i18n::operator<<;
    std::ostringstream out;
    out.setstate(std::ios_base::failbit);
    out << u"text"s;
    EXPECT_EQ(out.str(), "");
    EXPECT_TRUE(out.fail());
}

TEST(ConverterTest, Utf8HoldsEverything) {
    for (const std::string encoding : {"UTF-8", "utf8", "Utf_8"}) {
        for (const bool substitute : {true, false}) {
            const codecvt_ustring_to_string converter(encoding, substitute);
            EXPECT_EQ(converter.convert(u"a\0\u00e4\U0001F600"s), "a\0\xC3\xA4\xF0\x9F\x98\x80"s);
            EXPECT_EQ(converter.convert(u""), "");
        }
    }
}

TEST(ConverterTest, IllFormedTextIsReplacedOrRefused) {
    EXPECT_EQ(codecvt_ustring_to_string("UTF-8", /*substitute=*/true).convert(u"a" + High + u"b"),
              "a\xEF\xBF\xBD"
              "b");
    for (const std::string encoding : {"UTF-8", "ISO-8859-1"}) {
        const codecvt_ustring_to_string converter(encoding, /*substitute=*/false);
        EXPECT_THROW((void)converter.convert(u"a" + High + u"b"), conv::conversion_error);
        EXPECT_THROW((void)converter.convert(Low), conv::conversion_error);
    }
}

TEST(ConverterTest, Latin1HoldsItsOwnLetters) {
    for (const bool substitute : {true, false}) {
        const codecvt_ustring_to_string converter("ISO-8859-1", substitute);
        EXPECT_EQ(converter.convert(u"a\0\u00e4\u00ff"s), "a\0\xE4\xFF"s);
        EXPECT_EQ(converter.convert(u""), "");
    }
}

TEST(ConverterTest, WhatLatin1CannotHoldIsLeftOutOrRefused) {
    const std::u16string text = u"a\u20ac\u00e4\U0001F600b" + Low + u"c";
    EXPECT_EQ(codecvt_ustring_to_string("ISO-8859-1", /*substitute=*/true).convert(text),
              "a\xE4"
              "bc");
    EXPECT_THROW((void)codecvt_ustring_to_string("ISO-8859-1", /*substitute=*/false).convert(u"a\u20ac"),
                 conv::conversion_error);
}

TEST(ConverterTest, UnknownEncodingIsRefusedAtOnce) {
    for (const std::string encoding : {"no-such-encoding", "UTF-88", ""}) {
        for (const bool substitute : {true, false}) {
            EXPECT_THROW(codecvt_ustring_to_string(encoding, substitute), conv::invalid_charset_error) << encoding;
        }
    }
}

TEST(ConverterTest, ConverterIsUsedThroughItsInterface) {
    const std::unique_ptr<converter<std::u16string, std::string>> converter =
        std::make_unique<codecvt_ustring_to_string>("windows-1252", /*substitute=*/false);
    EXPECT_EQ(converter->convert(u"\u20ac"), "\x80");
}

}  // namespace
}  // namespace fl::i18n
