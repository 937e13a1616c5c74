#include "foundation/storage/provider/StorageIRI.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "foundation/storage/provider/Exception.h"

namespace foundation::storage::provider {
namespace {

const std::u16string High(1, char16_t{0xD83D});
const std::u16string Low(1, char16_t{0xDE00});

std::u16string parentOf(const std::u16string& text) { return StorageIRI(text).getParent().text(); }
std::u16string nameOf(const std::u16string& text) { return StorageIRI(text).getName(); }
std::u16string childOf(const std::u16string& text, const std::u16string& name) {
    return StorageIRI(text).getChild(name).text();
}

TEST(StorageIRITest, ParentOfALocationIsTheFolderThatHoldsIt) {
    const std::vector<std::pair<std::u16string, std::u16string>> cases = {
        {u"java://mount/a/b", u"java://mount/a"},
        {u"java://mount/a", u"java://mount/"},
        {u"java:///a/b/c", u"java:///a/b"},
        {u"java:///a", u"java:///"},
        {u"java:///a/", u"java:///"},
        {u"java:///a/b/", u"java:///a"},
        {u"java:///a/b//", u"java:///a"},
        {u"java:///a//b", u"java:///a"},
        {u"java:////a", u"java:///"},
        {u"java:///\u00e4/\U0001F600", u"java:///\u00e4"},
        {u"java:///%c3%a4/b", u"java:///%c3%a4"},
        {u"java:///a%2Fb/c", u"java:///a%2Fb"},
        {u"java:///a b/c", u"java:///a b"},
        {u"java://user@Host:80/a/b", u"java://user@Host:80/a"},
        {u"java:///a/b?c/d#e/f", u"java:///a"},
        {u"java:///a/b#c?d", u"java:///a"},
        {u"java://mount/a?b", u"java://mount/"},
        {u"java:/a/b", u"java:/a"},
        {u"java:/a", u"java:/"},
        {u"java:a/b", u"java:a"},
        {u"java:a", u"java:"},
        {u"/a/b", u"/a"},
        {u"/a", u"/"},
        {u"a/b", u"a"},
        {u"a", u""},
        {High + u"/" + Low, High},
    };
    for (const auto& [text, parent] : cases) {
        EXPECT_EQ(parentOf(text), parent) << testing::PrintToString(text);
        EXPECT_FALSE(StorageIRI(text).isRoot()) << testing::PrintToString(text);
    }
}

TEST(StorageIRITest, ParentOfARootIsThatRoot) {
    for (const std::u16string text :
         {u"", u"java:", u"java:/", u"java://", u"java:///", u"java:////", u"java://mount", u"java://mount/",
          u"java://mount//", u"java://mount/?query", u"java://mount#fragment", u"java:///.", u"java:///..",
          u"java:///a/..", u"java:///a/%2E%2e/", u"/", u"//mount", u"?q", u"#f"}) {
        EXPECT_EQ(parentOf(text), text);
        EXPECT_TRUE(StorageIRI(text).isRoot()) << testing::PrintToString(text);
        EXPECT_EQ(nameOf(text), u"") << testing::PrintToString(text);
    }
}

TEST(StorageIRITest, ParentFollowsDotSegments) {
    EXPECT_EQ(parentOf(u"java:///a/b/."), u"java:///a");
    EXPECT_EQ(parentOf(u"java:///a/./b"), u"java:///a");
    EXPECT_EQ(parentOf(u"java:///a/b/.."), u"java:///");
    EXPECT_EQ(parentOf(u"java:///a/b/../c"), u"java:///a");
    EXPECT_EQ(parentOf(u"java:///a/b/%2e%2E/c/d"), u"java:///a/c");
    EXPECT_EQ(parentOf(u"java:///../../a/b"), u"java:///a");
    EXPECT_EQ(parentOf(u"java:///a/.../b"), u"java:///a/...");
    EXPECT_EQ(parentOf(u"java:///.a/b"), u"java:///.a");
}

TEST(StorageIRITest, EveryLocationEndsAtItsRoot) {
    StorageIRI location(u"java://mount/a//b/./c/../d/?q");
    int steps = 0;
    for (; !location.isRoot(); location = location.getParent()) {
        ASSERT_LT(++steps, 10);
    }
    EXPECT_EQ(steps, 3);
    EXPECT_EQ(location.text(), u"java://mount/");
}

TEST(StorageIRITest, NameIsTheLastSegmentDecoded) {
    const std::vector<std::pair<std::u16string, std::u16string>> cases = {
        {u"java:///a", u"a"},
        {u"java:///a/b.txt", u"b.txt"},
        {u"java:///a/b/", u"b"},
        {u"java:///a/b//", u"b"},
        {u"java:///a%20b", u"a b"},
        {u"java:///a b", u"a b"},
        {u"java:///a%2Fb", u"a/b"},
        {u"java:///%25", u"%"},
        {u"java:///%2525", u"%25"},
        {u"java:///100%", u"100%"},
        {u"java:///%4g", u"%4g"},
        {u"java:///%c3%a4", u"\u00e4"},
        {u"java:///\u00e4", u"\u00e4"},
        {u"java:///%F0%9F%98%80", u"\U0001F600"},
        {u"java:///\u00c3%A4", u"\u00c3\ufffd"},
        {u"java:///%C3\u00a4", u"\ufffd\u00a4"},
        {u"java:///%ff", u"\ufffd"},
        {u"java:///%C3x", u"\ufffdx"},
        {u"java:///%ED%A0%80", u"\ufffd\ufffd\ufffd"},
        {u"java:///a%00b", std::u16string(u"a\0b", 3)},
        {u"java:///a/b?c/d#e/f", u"b"},
        {u"java:///a+b", u"a+b"},
        {u"java:///...", u"..."},
        {u"java:///a/b/..", u"a"},
        {u"java:///" + High, High},
        {u"a", u"a"},
    };
    for (const auto& [text, name] : cases) {
        EXPECT_EQ(nameOf(text), name) << testing::PrintToString(text);
    }
}

TEST(StorageIRITest, ChildIsOneLevelDown) {
    EXPECT_EQ(childOf(u"java://mount/a", u"b"), u"java://mount/a/b");
    EXPECT_EQ(childOf(u"java://mount/a/", u"b"), u"java://mount/a/b");
    EXPECT_EQ(childOf(u"java://mount/", u"b"), u"java://mount/b");
    EXPECT_EQ(childOf(u"java://mount", u"b"), u"java://mount/b");
    EXPECT_EQ(childOf(u"java://", u"b"), u"java:///b");
    EXPECT_EQ(childOf(u"java:///", u"b"), u"java:///b");
    EXPECT_EQ(childOf(u"java:///a//b", u"c"), u"java:///a/b/c");
    EXPECT_EQ(childOf(u"java:///a/b/..", u"c"), u"java:///a/c");
    EXPECT_EQ(childOf(u"java:///a?b#c", u"d"), u"java:///a/d");
    EXPECT_EQ(childOf(u"java:", u"a"), u"java:a");
    EXPECT_EQ(childOf(u"", u"a"), u"a");
    EXPECT_EQ(childOf(u"", u"a:b"), u"a%3Ab");
    EXPECT_EQ(childOf(u"/", u"a:b"), u"/a:b");
}

TEST(StorageIRITest, NameOfAChildIsEncodedWhereItMustBe) {
    EXPECT_EQ(childOf(u"java:///", u"a b"), u"java:///a%20b");
    EXPECT_EQ(childOf(u"java:///", u"a/b?c#d%e"), u"java:///a%2Fb%3Fc%23d%25e");
    EXPECT_EQ(childOf(u"java:///", u"%41"), u"java:///%2541");
    EXPECT_EQ(childOf(u"java:///", u"[x]\\"), u"java:///%5Bx%5D%5C");
    EXPECT_EQ(childOf(u"java:///", u"a!$&'()*+,;=:@-._~z"), u"java:///a!$&'()*+,;=:@-._~z");
    EXPECT_EQ(childOf(u"java:///", u"\u00e4\U0001F600"), u"java:///\u00e4\U0001F600");
}

TEST(StorageIRITest, ChildGivesItsNameBack) {
    std::vector<std::u16string> names = {
        u"a",   u"a b", u" ",    u"%",  u"%41",        u"100%",   u"a/b",          u"/",
        u"//",  u"?",   u"#",    u"\\", u"...",        u".a",     u"a.",           u"..a",
        u"[x]", u":",   u"a:b",  u"@",  u"~",          u"+",      u"\u00e4",       u"a\u0308",
        u"\t",  u"\n",  u"\x7f", u";=", u"\U0001F600", u"\uffff", u"\u200f\u0085", u"%2E"};
    names.insert(names.end(), {High, Low, Low + High, u"a" + High + u"b", std::u16string(u"a\0b", 3)});
    for (const std::u16string text : {u"java://", u"java://mount/a", u"java:/x", u"java:", u"", u"a", u"/"}) {
        for (const std::u16string& name : names) {
            const StorageIRI child = StorageIRI(text).getChild(name);
            EXPECT_EQ(child.getName(), name) << testing::PrintToString(child.text());
            EXPECT_EQ(child.getParent().normalized(), StorageIRI(text).normalized().getChild(u"x").getParent())
                << testing::PrintToString(child.text());
        }
    }
}

TEST(StorageIRITest, ChildOfAnyNameGivesItsNameBack) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const StorageIRI folder(u"java://mount/a");
    for (int round = 0; round < 5000; ++round) {
        // The leading letter keeps the name from being only dots.
        std::u16string name = u"n";
        for (std::size_t length = random() % 6; length > 0; --length) {
            name.push_back(static_cast<char16_t>(random() % 4 == 0 ? random() % 0x10000 : random() % 0x80));
        }
        EXPECT_EQ(folder.getChild(name).getName(), name);
        EXPECT_EQ(folder.getChild(name).getParent(), folder) << testing::PrintToString(name);
    }
}

TEST(StorageIRITest, NoChildIsNamedByNothingOrByDots) {
    for (const std::u16string name : {u"", u".", u".."}) {
        try {
            (void)StorageIRI(u"java:///a").getChild(name);
            FAIL() << testing::PrintToString(name);
        } catch (const Exception& error) {
            EXPECT_EQ(error.code(), ErrorCode::InvalidLocation);
            EXPECT_EQ(error.location().text(), u"java:///a");
        }
    }
}

TEST(StorageIRITest, IriHoldsTheTextAsItIs) {
    EXPECT_EQ(StorageIRI(u"java:///\u00e4 b").toIRI(), network::IRI(u"java:///\u00e4 b"));
    EXPECT_EQ(StorageIRI(u"java:///\u00e4 b").toIRI().toAsciiString(true), u"java:///%C3%A4%20b");
    EXPECT_EQ(StorageIRI().toIRI().toAsciiString(true), u"");
}

TEST(StorageIRITest, LocationIsPrintedAsUtf8WithinTheGivenWidth) {
    std::ostringstream out;
    out << std::left << std::setfill('.') << std::setw(14) << StorageIRI(u"java:///\u00e4") << '|';
    EXPECT_EQ(out.str(), "java:///\xC3\xA4....|");
}

TEST(StorageIRITest, LocationsCompareByTheirText) {
    const StorageIRI a(u"java:///a");
    const StorageIRI b(u"java:///b");
    EXPECT_LT(a, b);
    EXPECT_NE(a, StorageIRI(u"java:///a/"));
    EXPECT_TRUE(StorageIRI().empty());
    EXPECT_EQ((std::set<StorageIRI>{b, a, a}).size(), 2U);
    EXPECT_EQ((std::unordered_set<StorageIRI>{b, a, a}).size(), 2U);
}

}  // namespace
}  // namespace foundation::storage::provider
