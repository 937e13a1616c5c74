#include "base/RawName.h"

#include <gtest/gtest.h>

#include "fl/i18n/text.h"

namespace jstore {

namespace {

TEST(RawNameTest, Utf8IsItsText) {
    for (const auto* const text : {u"", u"a", u"\u00FC", u"\u65E5\u672C", u"\U0001F600", u"\uFFFD", u"\uEF7F\uF000"}) {
        EXPECT_EQ(text, textOfName(fl::i18n::to_string(text)));
    }
}

TEST(RawNameTest, OtherBytesAreCharactersOfTheirOwn) {
    EXPECT_EQ(u"caf\uEFE9", textOfName("caf\xE9"));
    EXPECT_EQ(u"\uEFC3", textOfName("\xC3"));
    EXPECT_EQ(u"\uEFE4\uEFBDx", textOfName("\xE4\xBDx"));
    EXPECT_EQ(u"\uEFED\uEFA0\uEF80", textOfName("\xED\xA0\x80"));
    EXPECT_EQ(u"\uEFC0\uEFAF\uEFFF", textOfName("\xC0\xAF\xFF"));
    EXPECT_EQ(u"\uEFF0\uEF9F\u00FC", textOfName("\xF0\x9F\xC3\xBC"));
}

TEST(RawNameTest, CharacterThatStandsForAByteIsWrittenAsItsBytes) {
    EXPECT_EQ(u"\uEFEE\uEFBF\uEFA9", textOfName("\xEE\xBF\xA9"));
    EXPECT_TRUE(standsForBytes("caf\xEE\xBF\xA9"));
    EXPECT_TRUE(standsForBytes("\xEE\xBE\x80"));
    EXPECT_FALSE(standsForBytes("caf\xE9 \xEE\xBD\xBF \xEF\x80\x80"));
}

TEST(RawNameTest, ShownNameLeadsBackToItsBytes) {
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
        const std::string name = {'a', static_cast<char>(byte), 'b'};
        EXPECT_EQ(name, bytesOfShownName(fl::i18n::to_string(textOfName(name)))) << byte;
    }
    EXPECT_EQ("gr\xC3\xBC\xC3\x9F", bytesOfShownName("gr\xC3\xBC\xC3\x9F"));
}

}  // namespace

}  // namespace jstore
