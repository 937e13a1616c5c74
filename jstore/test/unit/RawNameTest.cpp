#include "base/RawName.h"

#include <gtest/gtest.h>

#include "fl/i18n/text.h"

namespace jstore {

namespace {

TEST(RawNameTest, Utf8IsItsText) {
    for (const auto* const text : {u"", u"a", u"\u00FC", u"\u65E5\u672C", u"\U0001F600", u"\uFFFD", u"\uEF7F\uF000"}) {
        EXPECT_EQ(textOfName(fl::i18n::to_string(text)), text);
    }
}

TEST(RawNameTest, OtherBytesAreCharactersOfTheirOwn) {
    EXPECT_EQ(textOfName("caf\xE9"), u"caf\uEFE9");
    EXPECT_EQ(textOfName("\xC3"), u"\uEFC3");
    EXPECT_EQ(textOfName("\xE4\xBDx"), u"\uEFE4\uEFBDx");
    EXPECT_EQ(textOfName("\xED\xA0\x80"), u"\uEFED\uEFA0\uEF80");
    EXPECT_EQ(textOfName("\xC0\xAF\xFF"), u"\uEFC0\uEFAF\uEFFF");
    EXPECT_EQ(textOfName("\xF0\x9F\xC3\xBC"), u"\uEFF0\uEF9F\u00FC");
}

TEST(RawNameTest, CharacterThatStandsForAByteIsWrittenAsItsBytes) {
    EXPECT_EQ(textOfName("\xEE\xBF\xA9"), u"\uEFEE\uEFBF\uEFA9");
    EXPECT_TRUE(standsForBytes("caf\xEE\xBF\xA9"));
    EXPECT_TRUE(standsForBytes("\xEE\xBE\x80"));
    EXPECT_FALSE(standsForBytes("caf\xE9 \xEE\xBD\xBF \xEF\x80\x80"));
}

TEST(RawNameTest, ShownNameLeadsBackToItsBytes) {
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
        const std::string name = {'a', static_cast<char>(byte), 'b'};
        EXPECT_EQ(bytesOfShownName(fl::i18n::to_string(textOfName(name))), name) << byte;
    }
    EXPECT_EQ(bytesOfShownName("gr\xC3\xBC\xC3\x9F"), "gr\xC3\xBC\xC3\x9F");
}

}  // namespace

}  // namespace jstore
