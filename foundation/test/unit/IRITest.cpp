#include "foundation/network/IRI.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace foundation::network {
namespace {

struct Case {
    std::u16string text;
    std::u16string strict;
    std::u16string loose;
};

std::u16string ascii(const std::u16string& text) { return IRI(text).toAsciiString(/*strict=*/true); }
std::u16string asciiLoose(const std::u16string& text) { return IRI(text).toAsciiString(/*strict=*/false); }

void expectAll(const std::vector<Case>& cases) {
    for (const auto& [text, strict, loose] : cases) {
        EXPECT_EQ(ascii(text), strict) << testing::PrintToString(text);
        EXPECT_EQ(asciiLoose(text), loose) << testing::PrintToString(text);
    }
}

TEST(IRITest, TextThatNeedsNothingIsKept) {
    for (const std::u16string text :
         {u"", u"java://", u"java:///", u"java://mount", u"java://mount/", u"java://mount/a/b.txt", u"a", u"/", u"//",
          u"java:///-._~", u"java:///a!$&'()*+,;=:@b", u"java://user:pw@host:80/a?b=c/d?e#f/g?h",
          u"java:///a//b/./../c", u"java:///0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"}) {
        EXPECT_EQ(ascii(text), text);
        EXPECT_EQ(asciiLoose(text), text);
    }
}

TEST(IRITest, TextOutsideAsciiIsEncodedAsUtf8InUpperCase) {
    expectAll({
        {u"java:///\u00e4", u"java:///%C3%A4", u"java:///%C3%A4"},
        {u"\u00e4", u"%C3%A4", u"%C3%A4"},
        {u"java:///a\u00e4b", u"java:///a%C3%A4b", u"java:///a%C3%A4b"},
        {u"java:///\u00e4/\u00f6/c", u"java:///%C3%A4/%C3%B6/c", u"java:///%C3%A4/%C3%B6/c"},
        {u"java:///\u0080", u"java:///%C2%80", u"java:///%C2%80"},
        {u"java:///\u07ff\u0800", u"java:///%DF%BF%E0%A0%80", u"java:///%DF%BF%E0%A0%80"},
        {u"java:///\u20ac", u"java:///%E2%82%AC", u"java:///%E2%82%AC"},
        {u"java:///\u65e5\u672c", u"java:///%E6%97%A5%E6%9C%AC", u"java:///%E6%97%A5%E6%9C%AC"},
        {u"java:///\uffff", u"java:///%EF%BF%BF", u"java:///%EF%BF%BF"},
        {u"java:///\U00010000", u"java:///%F0%90%80%80", u"java:///%F0%90%80%80"},
        {u"java:///\U0001F600x", u"java:///%F0%9F%98%80x", u"java:///%F0%9F%98%80x"},
        {u"java:///\U0010FFFF", u"java:///%F4%8F%BF%BF", u"java:///%F4%8F%BF%BF"},
        {u"java://m\u00fcnt/a", u"java://m%C3%BCnt/a", u"java://m%C3%BCnt/a"},
        {u"java:///a?\u00e4#\u00f6", u"java:///a?%C3%A4#%C3%B6", u"java:///a?%C3%A4#%C3%B6"},
    });
}

TEST(IRITest, LettersAreNotRecomposed) {
    expectAll({
        {u"java:///a\u0308", u"java:///a%CC%88", u"java:///a%CC%88"},
        {u"java:///\u00e4", u"java:///%C3%A4", u"java:///%C3%A4"},
    });
}

TEST(IRITest, LoneSurrogatesBecomeTheReplacementCharacter) {
    const std::u16string high(1, char16_t{0xD83D});
    const std::u16string low(1, char16_t{0xDE00});
    const std::u16string replaced = u"%EF%BF%BD";
    expectAll({
        {high, replaced, replaced},
        {low, replaced, replaced},
        {high + u"a", replaced + u"a", replaced + u"a"},
        {low + u"a", replaced + u"a", replaced + u"a"},
        {low + high, replaced + replaced, replaced + replaced},
        {high + high, replaced + replaced, replaced + replaced},
        {high + high + low, replaced + u"%F0%9F%98%80", replaced + u"%F0%9F%98%80"},
        {high + u"%", replaced + u"%25", replaced + u"%"},
        {high + u"\u00e4", replaced + u"%C3%A4", replaced + u"%C3%A4"},
        {u"java:///" + high, u"java:///" + replaced, u"java:///" + replaced},
    });
}

TEST(IRITest, EscapesAreKeptAsTheyStand) {
    expectAll({
        {u"java:///%41", u"java:///%41", u"java:///%41"},
        {u"java:///%c3%A4", u"java:///%c3%A4", u"java:///%c3%A4"},
        {u"java:///%2f%2F", u"java:///%2f%2F", u"java:///%2f%2F"},
        {u"java:///%25", u"java:///%25", u"java:///%25"},
        {u"java:///%ff%00", u"java:///%ff%00", u"java:///%ff%00"},
        {u"%aF", u"%aF", u"%aF"},
    });
}

TEST(IRITest, PercentThatStartsNoEscapeIsEncoded) {
    expectAll({
        {u"%", u"%25", u"%"},
        {u"java:///100%", u"java:///100%25", u"java:///100%"},
        {u"java:///%4", u"java:///%254", u"java:///%4"},
        {u"java:///%4g", u"java:///%254g", u"java:///%4g"},
        {u"java:///%g4", u"java:///%25g4", u"java:///%g4"},
        {u"java:///%%41", u"java:///%25%41", u"java:///%%41"},
        {u"java:///%%%", u"java:///%25%25%25", u"java:///%%%"},
        {u"java:///% 41", u"java:///%25%2041", u"java:///% 41"},
        {u"java:///%\uff14\uff11", u"java:///%25%EF%BC%94%EF%BC%91", u"java:///%%EF%BC%94%EF%BC%91"},
    });
}

TEST(IRITest, AsciiThatNoUriHoldsIsEncoded) {
    expectAll({
        {u"java:///a b", u"java:///a%20b", u"java:///a b"},
        {u"java:///a\\b", u"java:///a%5Cb", u"java:///a\\b"},
        {u"java:///\"<>", u"java:///%22%3C%3E", u"java:///\"<>"},
        {u"java:///^`", u"java:///%5E%60", u"java:///^`"},
        {u"java:///{|}", u"java:///%7B%7C%7D", u"java:///{|}"},
        {u"java:///\t\n\r", u"java:///%09%0A%0D", u"java:///\t\n\r"},
        {u"java:///\u0001\u001f\u007f", u"java:///%01%1F%7F", u"java:///\u0001\u001f\u007f"},
        {std::u16string(u"java:///\0x", 10), u"java:///%00x", std::u16string(u"java:///\0x", 10)},
        {u"java://my host/", u"java://my%20host/", u"java://my host/"},
        {u" java:///a ", u"%20java:///a%20", u" java:///a "},
        {u"java:///a?b c#d e", u"java:///a?b%20c#d%20e", u"java:///a?b c#d e"},
    });
}

TEST(IRITest, OnlyTheFirstNumberSignStaysOne) {
    expectAll({
        {u"java:///a#b#c", u"java:///a#b%23c", u"java:///a#b#c"},
        {u"##", u"#%23", u"##"},
        {u"java:///a%23b#c", u"java:///a%23b#c", u"java:///a%23b#c"},
    });
}

TEST(IRITest, BracketsStayAroundAnAddressInTheHostAlone) {
    expectAll({
        {u"java://[::1]/a", u"java://[::1]/a", u"java://[::1]/a"},
        {u"java://[2001:db8::1]:80/", u"java://[2001:db8::1]:80/", u"java://[2001:db8::1]:80/"},
        {u"java://user@[::1]", u"java://user@[::1]", u"java://user@[::1]"},
        {u"java://\u00fc@[::1]/\u00e4", u"java://%C3%BC@[::1]/%C3%A4", u"java://%C3%BC@[::1]/%C3%A4"},
        {u"//[v1.a:b]/", u"//[v1.a:b]/", u"//[v1.a:b]/"},
        {u"java://[::1]/[x]", u"java://[::1]/%5Bx%5D", u"java://[::1]/[x]"},
        {u"java://[::1]?[x]", u"java://[::1]?%5Bx%5D", u"java://[::1]?[x]"},
        {u"java:///[::1]", u"java:///%5B::1%5D", u"java:///[::1]"},
        {u"java:[::1]", u"java:%5B::1%5D", u"java:[::1]"},
        {u"java://[nonsense]/", u"java://%5Bnonsense%5D/", u"java://[nonsense]/"},
        {u"java://[::1", u"java://%5B::1", u"java://[::1"},
        {u"java://[::1]x/", u"java://%5B::1%5Dx/", u"java://[::1]x/"},
        {u"java://x[::1]/", u"java://x%5B::1%5D/", u"java://x[::1]/"},
        {u"java://[::1]:8x/", u"java://%5B::1%5D:8x/", u"java://[::1]:8x/"},
        {u"java://[::\u00e4]/", u"java://%5B::%C3%A4%5D/", u"java://[::%C3%A4]/"},
        {u"]", u"%5D", u"]"},
    });
}

TEST(IRITest, LongTextIsEncodedWhole) {
    std::u16string text = u"java:///";
    std::u16string expected = text;
    for (int i = 0; i < 10000; ++i) {
        text += u"ab\u00e4 ";
        expected += u"ab%C3%A4%20";
    }
    EXPECT_EQ(ascii(text), expected);
}

TEST(IRITest, StrictFormOfAnyTextIsMadeOfUriCharactersAndStaysAsItIs) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::u16string alphabet = u"ab4F%%#[]/:?@\\ \u00e4\u20ac" + std::u16string{0xD83D, 0xDE00, 0x0000, 0x007F};
    constexpr std::u16string_view Allowed =
        u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~:/?#[]@!$&'()*+,;=%";
    for (int round = 0; round < 5000; ++round) {
        std::u16string text;
        for (std::size_t length = random() % 12; length > 0; --length) {
            text.push_back(alphabet[random() % alphabet.size()]);
        }
        const std::u16string strict = ascii(text);
        EXPECT_EQ(strict.find_first_not_of(Allowed), std::u16string::npos) << testing::PrintToString(text);
        EXPECT_EQ(ascii(strict), strict) << testing::PrintToString(text);
    }
}

TEST(IRITest, ObjectThatStaysKeepsItsText) {
    const IRI plain(u"java:///a/b.txt");
    EXPECT_EQ(plain.toAsciiString(/*strict=*/true), u"java:///a/b.txt");
    EXPECT_EQ(plain.text(), u"java:///a/b.txt");
    const IRI other(u"java:///\u00e4");
    EXPECT_EQ(other.toAsciiString(/*strict=*/true), u"java:///%C3%A4");
    EXPECT_EQ(other.text(), u"java:///\u00e4");
}

TEST(IRITest, OneCharacterAnywhereIsSeen) {
    // The scan takes units in groups; it must find a unit that needs encoding anywhere in a group, at any length. One
    // byte of each of the last two units is a letter.
    const std::vector<std::pair<char16_t, std::u16string>> encoded = {{u' ', u"%20"},
                                                                      {u'\u0080', u"%C2%80"},
                                                                      {u'\u2026', u"%E2%80%A6"},
                                                                      {u'\u6100', u"%E6%84%80"},
                                                                      {u'\u6161', u"%E6%85%A1"}};
    for (std::size_t length = 1; length <= 35; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            for (const auto& [unit, escapes] : encoded) {
                std::u16string text(length, u'a');
                text[at] = unit;
                EXPECT_EQ(ascii(text), std::u16string(at, u'a') + escapes + std::u16string(length - at - 1, u'a'));
            }
        }
    }
}

TEST(IRITest, LongTextIsEncodedLikeShortText) {
    // Text of fewer than eight units is scanned unit by unit, longer text from both ends.
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string one(1, static_cast<char16_t>(unit));
        const std::u16string encoded = ascii(u"a" + one).substr(1);
        ASSERT_EQ(ascii(one + u"long-tail"), encoded + u"long-tail") << unit;
        ASSERT_EQ(ascii(u"java:///a/" + one + u"long-tail"), u"java:///a/" + encoded + u"long-tail") << unit;
        ASSERT_EQ(ascii(u"java:///a/long-" + one), u"java:///a/long-" + encoded) << unit;
    }
}

TEST(IRITest, EqualTextsAreEqual) {
    EXPECT_EQ(IRI(u"java:///a"), IRI(u"java:///a"));
    EXPECT_NE(IRI(u"java:///a"), IRI(u"java:///A"));
    EXPECT_EQ(IRI(), IRI(u""));
    EXPECT_EQ(IRI(u"java:///\u00e4").text(), u"java:///\u00e4");
}

}  // namespace
}  // namespace foundation::network
