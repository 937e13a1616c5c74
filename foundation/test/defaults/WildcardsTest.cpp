#include "foundation/storage/provider/Wildcards.h"

#include <gtest/gtest.h>

#include <string>

#include "fl/i18n/text.h"

namespace foundation::storage::provider {
namespace {

struct Case {
    std::u16string pattern;
    std::u16string name;
    bool fits;
};

class WildcardsTest : public testing::TestWithParam<Case> {};

TEST_P(WildcardsTest, NameFitsAsThePatternSays) {
    const Case& test = GetParam();
    EXPECT_EQ(Wildcards(test.pattern).matches(test.name), test.fits)
        << fl::i18n::to_string(test.pattern) << " and " << fl::i18n::to_string(test.name);
}

INSTANTIATE_TEST_SUITE_P(Plain, WildcardsTest,
                         testing::Values(Case{u"", u"", true}, Case{u"", u"a", false}, Case{u"a", u"", false},
                                         Case{u"abc", u"abc", true}, Case{u"abc", u"abcd", false},
                                         Case{u"abcd", u"abc", false}, Case{u"abc", u"ABC", false},
                                         Case{u"[ab]", u"a", false}, Case{u"[ab]", u"[ab]", true},
                                         Case{u"a;b", u"a", false}, Case{u"a;b", u"a;b", true},
                                         Case{u"\\*", u"*", false}, Case{u"\\*", u"\\x", true}));

INSTANTIATE_TEST_SUITE_P(QuestionMark, WildcardsTest,
                         testing::Values(Case{u"?", u"a", true}, Case{u"?", u"", false}, Case{u"?", u"ab", false},
                                         Case{u"a?c", u"abc", true}, Case{u"a?c", u"ac", false},
                                         Case{u"??", u"ab", true}, Case{u"?", u"?", true}, Case{u"?", u"*", true}));

INSTANTIATE_TEST_SUITE_P(Star, WildcardsTest,
                         testing::Values(Case{u"*", u"", true}, Case{u"*", u"abc", true}, Case{u"**", u"", true},
                                         Case{u"*.txt", u"a.txt", true}, Case{u"*.txt", u".txt", true},
                                         Case{u"*.txt", u"a.txt.gz", false}, Case{u"*.*", u"name", false},
                                         Case{u"*.*", u"a.b", true}, Case{u"a*", u"a", true}, Case{u"a*", u"ba", false},
                                         Case{u"*a*", u"bab", true}, Case{u"*a*", u"bbb", false},
                                         Case{u"a*b*c", u"axxbxxc", true}, Case{u"a*b*c", u"axxcxxb", false},
                                         Case{u"*ab", u"aab", true}, Case{u"*aab", u"aaab", true},
                                         Case{u"*ab*ab", u"ab", false}, Case{u"*ab*ab", u"abab", true},
                                         Case{u"*?", u"", false}, Case{u"*?", u"ab", true}, Case{u"?*?", u"a", false},
                                         Case{u"*a?c*", u"xxabbabcx", true}));

INSTANTIATE_TEST_SUITE_P(BeyondTheFirstPlane, WildcardsTest,
                         testing::Values(Case{u"?", u"\U0001F600", true}, Case{u"??", u"\U0001F600", false},
                                         Case{u"?x", u"\U0001F600x", true}, Case{u"*\U0001F600", u"a\U0001F600", true},
                                         Case{u"\U0001F600", u"\U0001F601", false}, Case{u"?", u"é", true},
                                         Case{u"e", u"é", false}));

INSTANTIATE_TEST_SUITE_P(LoneSurrogates, WildcardsTest,
                         testing::Values(Case{u"?", {0xD83D}, true}, Case{u"?", {0xDE00}, true},
                                         Case{u"??", {0xDE00, 0xD83D}, true}, Case{{0xD83D}, {0xD83D}, true},
                                         // Half a pair is no character of a name that has the whole one.
                                         Case{{u'*', 0xDE00}, {0xD83D, 0xDE00}, false},
                                         Case{{0xD83D, u'*'}, {0xD83D, 0xDE00}, false},
                                         Case{{0xD83D, u'?'}, {0xD83D, 0xDE00}, false}));

// With a search that tries every way to share the name out among the stars, these would not end in a lifetime.
TEST(WildcardsTimeTest, ManyStarsDoNotMultiply) {
    std::u16string pattern;
    for (int star = 0; star < 200; ++star) {
        pattern += u"*a";
    }
    const std::u16string name(5000, u'a');
    EXPECT_TRUE(Wildcards(pattern).matches(name));
    EXPECT_FALSE(Wildcards(pattern + u"*b").matches(name));
    EXPECT_FALSE(Wildcards(pattern + u"b").matches(name));
}

}  // namespace
}  // namespace foundation::storage::provider
