#include "base/Location.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

#include "base/Problem.h"
#include "support/TemporaryFolder.h"

namespace jstore {

using ::testing::HasSubstr;

namespace {

class LocationTest : public ::testing::Test {
protected:
    LocationTest() { std::filesystem::current_path(m_folder.path()); }
    ~LocationTest() override { std::filesystem::current_path(m_before); }

    [[nodiscard]] static Problem problemOf(const std::string& argument) {
        try {
            const auto text = toLocation(argument).text();
            ADD_FAILURE() << argument << " became " << text;
        } catch (const CommandError& error) {
            return error.problem();
        }
        return {};
    }

    std::filesystem::path m_before = std::filesystem::current_path();
    test::TemporaryFolder m_folder;
};

TEST_F(LocationTest, IriIsTakenAsItStands) {
    for (const auto* const text : {"java:///", "java:///tmp/a", "java:///tmp/a%20b", "java://mount/a b/%",
                                   "java://mount", "java:///a/../b", "java:///tmp/\xF0\x9F\x98\x80"}) {
        EXPECT_EQ(text, toLocation(text).text());
    }
}

TEST_F(LocationTest, SchemeIsInLowerCase) { EXPECT_EQ("java:///Tmp", toLocation("JaVa:///Tmp").text()); }

TEST_F(LocationTest, AbsolutePathIsALocation) {
    EXPECT_EQ("java:///tmp/a", toLocation("/tmp/a").text());
    EXPECT_EQ("java:///tmp/a", toLocation("//tmp///./a/").text());
    EXPECT_EQ("java:///", toLocation("/").text());
}

TEST_F(LocationTest, RelativePathBeginsAtTheWorkingFolder) {
    EXPECT_EQ(m_folder.location("a/b"), toLocation("a/b").text());
    EXPECT_EQ(m_folder.location("a"), toLocation("./a").text());
    EXPECT_EQ("java://" + m_folder.path().string(), toLocation(".").text());
}

TEST_F(LocationTest, NamesOfAPathAreEncoded) {
    EXPECT_EQ("java:///a%20b/%23/%3F/%25/%2541", toLocation("/a b/#/?/%/%41").text());
    EXPECT_EQ(u"100% #1?", toLocation("/100% #1?").iri().getName());
    EXPECT_EQ(u"\U0001F600", toLocation("/\xF0\x9F\x98\x80").iri().getName());
}

TEST_F(LocationTest, ColonMakesNoSchemeWithoutSlashes) {
    EXPECT_EQ(u"a:b", toLocation("a:b").iri().getName());
    EXPECT_EQ(u"12:30", toLocation("12:30").iri().getName());
    EXPECT_EQ(u"java:x", toLocation("./java:x").iri().getName());
}

TEST_F(LocationTest, DotDotFollowsSymbolicLinks) {
    m_folder.folder("elsewhere/deep");
    std::filesystem::create_directory_symlink("elsewhere/deep", m_folder / "link");
    EXPECT_EQ(m_folder.location("elsewhere/x"), toLocation("link/../x").text());
    EXPECT_EQ("java://" + m_folder.path().string(), toLocation("elsewhere/..").text());
    EXPECT_EQ("java:///x", toLocation("/../x").text());
}

TEST_F(LocationTest, DotDotAfterNothingIsNotFound) {
    const auto problem = problemOf("missing/../x");
    EXPECT_EQ("NotFound", problem.code);
    EXPECT_EQ(ExitCode::NotFound, problem.exitCode);
    EXPECT_EQ("missing/../x", problem.location);
}

TEST_F(LocationTest, HashAndQuestionMarkInAnIriAreRefused) {
    EXPECT_THAT(errorLine(problemOf("java:///a#b")), "jstore: InvalidLocation: java:///a#b: write %23 for # in a name");
    EXPECT_THAT(errorLine(problemOf("java:///a?b#c")), HasSubstr("write %3F for ? in a name"));
    EXPECT_EQ(ExitCode::Usage, problemOf("java:///a#b").exitCode);
}

TEST_F(LocationTest, OtherSchemesAreRefused) {
    EXPECT_THAT(problemOf("http://host/x").text, HasSubstr("java://"));
    EXPECT_EQ(ExitCode::Usage, problemOf("http://host/x").exitCode);
    EXPECT_THAT(problemOf("java:/x").text, HasSubstr("begins with java://"));
    EXPECT_THAT(problemOf("java:x").text, HasSubstr("./"));
}

TEST_F(LocationTest, EmptyAndIriThatIsNotUtf8AreRefused) {
    EXPECT_EQ(ExitCode::Usage, problemOf("").exitCode);
    EXPECT_EQ("jstore: InvalidLocation: java:///gr\xEF\xBF\xBDn: it is not UTF-8; a local path may be any bytes",
              errorLine(problemOf("java:///gr\xFCn")));
    EXPECT_EQ(ExitCode::Usage, problemOf("java:///\xFF").exitCode);
}

TEST_F(LocationTest, PathMayBeAnyBytes) {
    EXPECT_EQ(u"gr\uEFFCn", toLocation("/tmp/gr\xFCn").iri().getName());
    EXPECT_EQ(m_folder.location("a\xEE\xBF\xBF"), toLocation("a\xFF").text());
}

TEST_F(LocationTest, NameAsItIsShownIsTheNameThatIsThere) {
    EXPECT_EQ(toLocation("gr\xFCn").text(), toLocation("gr\xEE\xBF\xBCn").text());
    m_folder.file("gr\xEE\xBF\xBCn");
    EXPECT_EQ(u"gr\uEFEE\uEFBF\uEFBCn", toLocation("gr\xEE\xBF\xBCn").iri().getName());
}

TEST_F(LocationTest, OneWrongArgumentStopsAll) {
    EXPECT_EQ(2U, toLocations({"a", "b"}).size());
    EXPECT_THROW(static_cast<void>(toLocations({"a", "http://x"})), CommandError);
}

}  // namespace

}  // namespace jstore
