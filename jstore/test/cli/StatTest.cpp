#include "support/FolderTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

class StatTest : public FolderTest {
protected:
    StatTest() {
        m_folder.file("a", "content");
        m_folder.folder("d");
    }
};

TEST_F(StatTest, FileIsTold) {
    EXPECT_THAT(jstore({"stat", at("a")}),
                Prints(AllOf(StartsWith("location    " + at("a") + '\n'), HasSubstr("\ntype        file\n"),
                             HasSubstr("\nsize        7\n"), ContainsRegex("\nmodified    20[^\n]*Z\n"),
                             HasSubstr("\nwritable    yes\n"), ContainsRegex("\ncapacity    [1-9]"),
                             ContainsRegex("\noccupied    [0-9]"), HasSubstr("\nattribute   basic:creationTime="),
                             ContainsRegex("\nattribute   posix:permissions=rw"))));
}

TEST_F(StatTest, FolderHasNoSize) {
    EXPECT_THAT(jstore({"stat", at("d")}), Prints(AllOf(HasSubstr("type        folder"), Not(HasSubstr("\nsize ")))));
}

TEST_F(StatTest, SeveralAreKeptApartAndMissingIsTold) {
    const auto outcome = jstore({"stat", at("a"), at("none"), at("d")});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_THAT(outcome.out, HasSubstr("\n\nlocation    " + at("d")));
    EXPECT_EQ(outcome.err, "jstore: NotFound: " + at("none") + '\n');
}

TEST_F(StatTest, JsonHasAllFields) {
    const auto objects = objectsOf(jstore({"--json", "stat", at("a"), at("d")}));
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0]["type"], "file");
    EXPECT_EQ(objects[0]["size"], 7);
    EXPECT_EQ(objects[0]["writable"], true);
    EXPECT_GT(objects[0]["capacity"].get<std::uint64_t>(), 0U);
    EXPECT_TRUE(objects[0].contains("occupied") && objects[0].contains("lastModified"));
    EXPECT_EQ(objects[0]["attributes"]["basic:isRegularFile"], "true");
    EXPECT_EQ(objects[1]["type"], "folder");
    EXPECT_FALSE(objects[1].contains("size"));
}

TEST_F(StatTest, WhatTheBackEndDoesNotKnowIsLeftOut) {
    const auto outcome = jstore({"--json", "--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                 "com.corvallen.jstore.test.PlainProvider", "stat", "java:///file"});
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 1U) << outcome.err;
    EXPECT_EQ(objects[0], json({{"verb", "stat"},
                                {"location", "java:///file"},
                                {"type", "file"},
                                {"size", 42},
                                {"lastModified", "1970-01-01T00:00:00.001Z"},
                                {"writable", false},
                                {"attributes", json::object()},
                                {"ok", true}}));
}

class DfTest : public StatTest {};

TEST_F(DfTest, SizesAreNumbersUnderAHeading) {
    const auto outcome = jstore({"df", at("a"), at("d")});
    EXPECT_EQ(outcome.exitCode, 0);
    const auto lines = outcome.outLines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[0], ContainsRegex("^ *capacity +occupied +free +location$"));
    EXPECT_THAT(lines[1], ContainsRegex("^ *[0-9]+ +[0-9]+ +[0-9]+  " + at("a") + '$'));
    EXPECT_THAT(jstore({"df", "-H", at("a")}), Prints(ContainsRegex("[0-9][.][0-9][KMGTPE] ")));
}

TEST_F(DfTest, FreeIsWhatIsLeft) {
    const auto objects = objectsOf(jstore({"--json", "df", at("a")}));
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]["capacity"].get<std::uint64_t>(),
              objects[0]["occupied"].get<std::uint64_t>() + objects[0]["free"].get<std::uint64_t>());
}

TEST_F(DfTest, MissingIsThreeWithoutAHeading) {
    EXPECT_THAT(jstore({"df", at("none")}), FailsWith(3, "jstore: NotFound: " + at("none")));
}

TEST_F(DfTest, BackEndThatCannotTellIsEight) {
    EXPECT_EQ(jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test.PlainProvider",
                      "df", "java:///file"})
                  .exitCode,
              8);
}

}  // namespace

}  // namespace jstore::test
