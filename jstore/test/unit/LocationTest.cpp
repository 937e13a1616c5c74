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
        EXPECT_EQ(toLocation(text).text(), text);
    }
}

TEST_F(LocationTest, SchemeIsInLowerCase) { EXPECT_EQ(toLocation("JaVa:///Tmp").text(), "java:///Tmp"); }

TEST_F(LocationTest, AbsolutePathIsALocation) {
    EXPECT_EQ(toLocation("/tmp/a").text(), "java:///tmp/a");
    EXPECT_EQ(toLocation("//tmp///./a/").text(), "java:///tmp/a");
    EXPECT_EQ(toLocation("/").text(), "java:///");
}

TEST_F(LocationTest, RelativePathBeginsAtTheWorkingFolder) {
    EXPECT_EQ(toLocation("a/b").text(), m_folder.location("a/b"));
    EXPECT_EQ(toLocation("./a").text(), m_folder.location("a"));
    EXPECT_EQ(toLocation(".").text(), "java://" + m_folder.path().string());
}

TEST_F(LocationTest, NamesOfAPathAreEncoded) {
    EXPECT_EQ(toLocation("/a b/#/?/%/%41").text(), "java:///a%20b/%23/%3F/%25/%2541");
    EXPECT_EQ(toLocation("/100% #1?").iri().getName(), u"100% #1?");
    EXPECT_EQ(toLocation("/\xF0\x9F\x98\x80").iri().getName(), u"\U0001F600");
}

TEST_F(LocationTest, ColonMakesNoSchemeWithoutSlashes) {
    EXPECT_EQ(toLocation("a:b").iri().getName(), u"a:b");
    EXPECT_EQ(toLocation("12:30").iri().getName(), u"12:30");
    EXPECT_EQ(toLocation("./java:x").iri().getName(), u"java:x");
}

TEST_F(LocationTest, DotDotFollowsSymbolicLinks) {
    m_folder.folder("elsewhere/deep");
    std::filesystem::create_directory_symlink("elsewhere/deep", m_folder / "link");
    EXPECT_EQ(toLocation("link/../x").text(), m_folder.location("elsewhere/x"));
    EXPECT_EQ(toLocation("elsewhere/..").text(), "java://" + m_folder.path().string());
    EXPECT_EQ(toLocation("/../x").text(), "java:///x");
}

TEST_F(LocationTest, DotDotAfterNothingIsNotFound) {
    const auto problem = problemOf("missing/../x");
    EXPECT_EQ(problem.code, "NotFound");
    EXPECT_EQ(problem.exitCode, ExitCode::NotFound);
    EXPECT_EQ(problem.location, "missing/../x");
}

TEST_F(LocationTest, HashAndQuestionMarkInAnIriAreRefused) {
    EXPECT_THAT(errorLine(problemOf("java:///a#b")), "jstore: InvalidLocation: java:///a#b: write # in a name as %23");
    EXPECT_THAT(errorLine(problemOf("java:///a?b#c")), HasSubstr("write ? in a name as %3F"));
    EXPECT_EQ(problemOf("java:///a#b").exitCode, ExitCode::Usage);
}

TEST_F(LocationTest, OtherSchemesAreRefused) {
    EXPECT_THAT(problemOf("http://host/x").text, HasSubstr("java://"));
    EXPECT_EQ(problemOf("http://host/x").exitCode, ExitCode::Usage);
    EXPECT_THAT(problemOf("java:/x").text, HasSubstr("begins with java://"));
    EXPECT_THAT(problemOf("java:x").text, HasSubstr("./"));
}

TEST_F(LocationTest, EmptyAndIriThatIsNotUtf8AreRefused) {
    EXPECT_EQ(problemOf("").exitCode, ExitCode::Usage);
    EXPECT_EQ(errorLine(problemOf("java:///gr\xFCn")),
              "jstore: InvalidLocation: java:///gr\xEF\xBF\xBDn: not UTF-8; only a local path may hold other bytes");
    EXPECT_EQ(problemOf("java:///\xFF").exitCode, ExitCode::Usage);
}

TEST_F(LocationTest, PathMayBeAnyBytes) {
    EXPECT_EQ(toLocation("/tmp/gr\xFCn").iri().getName(), u"gr\uEFFCn");
    EXPECT_EQ(toLocation("a\xFF").text(), m_folder.location("a\xEE\xBF\xBF"));
}

TEST_F(LocationTest, NameAsItIsShownIsTheNameThatIsThere) {
    EXPECT_EQ(toLocation("gr\xFCn").text(), toLocation("gr\xEE\xBF\xBCn").text());
    m_folder.file("gr\xEE\xBF\xBCn");
    EXPECT_EQ(toLocation("gr\xEE\xBF\xBCn").iri().getName(), u"gr\uEFEE\uEFBF\uEFBCn");
}

TEST_F(LocationTest, OneWrongArgumentStopsAll) {
    EXPECT_EQ(toLocations({"a", "b"}).size(), 2U);
    EXPECT_THROW(static_cast<void>(toLocations({"a", "http://x"})), CommandError);
}

}  // namespace

}  // namespace jstore
