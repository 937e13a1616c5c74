#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider {
namespace {

std::u16string normal(const std::u16string& text) { return StorageIRI(text).normalized().text(); }

TEST(NormalizedLocationTest, EverySpellingOfALocationHasOneForm) {
    const std::vector<std::pair<std::u16string, std::vector<std::u16string>>> cases = {
        {u"java:///", {u"java://", u"java:///", u"java:////", u"JAVA:///.", u"java:///..", u"java:///a/..", u"java:/"}},
        {u"java://mount/", {u"java://mount", u"java://mount//", u"java://%6Dount/", u"java://mount:/"}},
        {u"java:///a",
         {u"java:///a", u"java:///a/", u"java:////a//", u"java:///./a", u"java:///b/../a", u"java:///../a", u"java:/a",
          u"java:///%61", u"Java:///b/%2e%2E/a/%2e", u"java:///a/b/.."}},
        {u"java:///\u00e4", {u"java:///\u00e4", u"java:///%c3%a4", u"java:///%C3%A4", u"java:///%c3%A4/"}},
        {u"java:///a%20b", {u"java:///a b", u"java:///a%20b"}},
        {u"java:///a%2Fb", {u"java:///a%2fb", u"java:///a%2Fb"}},
        {u"java:///100%25", {u"java:///100%", u"java:///100%25"}},
        {u"java:///a:@!$&'()*+,;=", {u"java:///a:@!$&'()*+,;=", u"java:///a%3A%40%21%24%26%27%28%29%2A%2B%2C%3B%3D"}},
        {u"java:///%5Bx%5D", {u"java:///[x]", u"java:///%5bx%5d"}},
        {u"java:///%FF", {u"java:///%ff", u"java:///%FF"}},
        {u"java:///\u00e4%C3%E2%82x", {u"java:///%c3%a4%c3%e2%82x"}},
        {u"java:///\ufffd", {u"java:///" + std::u16string(1, char16_t{0xD800}), u"java:///%EF%BF%BD"}},
        {u"java:///\U0001F600", {u"java:///\U0001F600", u"java:///%f0%9f%98%80"}},
        {u"java:///A", {u"java:///A", u"java:///%41"}},
        {u"java://user@host:80/A/B", {u"java://user@host:80/A/B/", u"JAVA://us%65r@h%6Fst:80/A//B"}},
        {u"java://m\u00fcnt/a", {u"java://m\u00fcnt/a", u"java://m%c3%bcnt/a"}},
        {u"java://u%3Ae:p%40@h%21/", {u"java://u%3ae:p%40@h%21"}},
        {u"java://[::A]:1/x", {u"java://[::A]:1/x/"}},
        {u"java:///a?B%20c%26#D", {u"java:///a/?B c%26#D", u"java:///%61?%42%20c%26#%44"}},
        {u"java:a/b", {u"java:a/b", u"JAVA:a//b/", u"java:%61/b"}},
        {u"java:", {u"java:", u"JAVA:"}},
    };
    for (const auto& [form, spellings] : cases) {
        for (const std::u16string& spelling : spellings) {
            EXPECT_EQ(normal(spelling), form) << testing::PrintToString(spelling);
        }
        EXPECT_EQ(normal(form), form);
    }
}

TEST(NormalizedLocationTest, DifferentLocationsKeepDifferentForms) {
    EXPECT_NE(normal(u"java:///a"), normal(u"java:///A"));
    EXPECT_NE(normal(u"java:///a%2Fb"), normal(u"java:///a/b"));
    EXPECT_NE(normal(u"java:///a%23b"), normal(u"java:///a#b"));
    EXPECT_NE(normal(u"java:///a%3Fb"), normal(u"java:///a?b"));
    EXPECT_NE(normal(u"java:///a?b%26c"), normal(u"java:///a?b&c"));
    EXPECT_NE(normal(u"java://user%40host/a"), normal(u"java://user@host/a"));
    EXPECT_NE(normal(u"java:///%2541"), normal(u"java:///A"));
    EXPECT_NE(normal(u"java:///%FF"), normal(u"java:///%FE"));
    EXPECT_NE(normal(u"java:///\u00e4"), normal(u"java:///a\u0308"));
    EXPECT_NE(normal(u"java://mount/a"), normal(u"java:///mount/a"));
    EXPECT_NE(normal(u"java://mount/a"), normal(u"java://Mount/a"));
}

TEST(NormalizedLocationTest, TextThatIsNoIriStaysAsItIs) {
    for (const std::u16string text : {u"", u"a/../b", u"/a/../b/", u"1java:///a/", u"\u00e4:///a/", u"java://a:b:c/d/",
                                      u"java://a@b@c/d/", u"://", u"?", u"#", u" java:///a/"}) {
        EXPECT_EQ(normal(text), text);
    }
}

TEST(NormalizedLocationTest, NormalFormOfAChildIsTheChildOfTheNormalForm) {
    for (const std::u16string name : {u"a b", u"a/b", u"%", u"\u00e4", u":", u"[", u"\U0001F600", u"...", u"A"}) {
        const StorageIRI folder(u"JAVA://Mount//x/../y/");
        EXPECT_EQ(folder.getChild(name).normalized(), folder.normalized().getChild(name));
    }
}

TEST(NormalizedLocationTest, FormOfAnyTextIsSettledAndNamesTheSameThing) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::vector<std::u16string> pieces = {
        u"a",          u"B", u"/", u"/", u".", u"..", u"%2e", u"%2F", u"%41",    u"%c3", u"%a4", u"\u00e4",
        u"\U0001F600", u"?", u"#", u"[", u":", u"@",  u" ",   u"%",   u"%E2%82", u"%00", u"%25", u"%7E"};
    for (int round = 0; round < 5000; ++round) {
        std::u16string text = random() % 2 == 0 ? u"java://" : u"java:///";
        for (std::size_t length = random() % 8; length > 0; --length) {
            text += pieces[random() % pieces.size()];
        }
        const StorageIRI location(text);
        const StorageIRI form = location.normalized();
        EXPECT_EQ(form.normalized(), form) << testing::PrintToString(text);
        EXPECT_EQ(form.getName(), location.getName()) << testing::PrintToString(text);
        EXPECT_EQ(form.isRoot(), location.isRoot()) << testing::PrintToString(text);
        if (!location.isRoot()) {
            EXPECT_EQ(form.getParent().normalized(), location.getParent().normalized()) << testing::PrintToString(text);
        }
    }
}

}  // namespace
}  // namespace foundation::storage::provider
