#include "support/FolderTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using nlohmann::json;
using ::testing::HasSubstr;

namespace {

/// A small tree, the same for drawing and searching.
class TreeTest : public FolderTest {
protected:
    TreeTest() {
        m_folder.folder("d/e");
        m_folder.file("d/e/f x");
        m_folder.file("d/z");
        fs::create_directory_symlink("..", m_folder / "d/e/up");
    }
};

TEST_F(TreeTest, BranchesLeadToEachName) {
    EXPECT_THAT(jstore({"tree", at("d")}),
                Prints(at("d") + "\n├── e\n│   ├── f x\n│   └── up\n└── z\n\n2 folders, 2 files\n"));
}

TEST_F(TreeTest, NamesAfterTheLastFolderHaveNoBranchBesideThem) {
    fs::remove(m_folder / "d/z");
    fs::remove(m_folder / "d/e/up");
    EXPECT_THAT(jstore({"tree", at("d")}), Prints(at("d") + "\n└── e\n    └── f x\n\n1 folder, 1 file\n"));
}

TEST_F(TreeTest, MissingIsThreeAndAFileIsNoFolder) {
    EXPECT_THAT(jstore({"tree", at("none")}), FailsWith(3, "jstore: NotFound: " + at("none")));
    EXPECT_THAT(jstore({"tree", at("d/z")}), FailsWith(1, HasSubstr("NotAFolder: " + at("d/z"))));
}

TEST_F(TreeTest, JsonHasTypeAndDepth) {
    const auto objects = objectsOf(jstore({"--json", "tree", at("d")}));
    ASSERT_EQ(objects.size(), 4U);
    EXPECT_EQ(objects[0],
              json({{"verb", "tree"}, {"location", at("d/e")}, {"type", "folder"}, {"depth", 1}, {"ok", true}}));
    EXPECT_EQ(objects[1]["depth"], 2);
}

/// A back end with folders in folders without end, more or less, and a stack that is small.
TEST(DeepTreeTest, DepthEndsWithAnErrorAndNotWithTheStack) {
    const auto outcome =
        Jstore({"--class-path", JSTORE_TEST_BACKENDS, "--provider", "com.corvallen.jstore.test.DeepProvider",
                "--jvm-option", "-Djstore.test.depth=2100", "du", "-s", "java:///d"})
            .through({"/bin/sh", "-c", "ulimit -s 512; exec \"$@\"", "sh"})
            .run();
    EXPECT_EQ(outcome.exitCode, 6) << outcome.signal;
    EXPECT_EQ(outcome.errLines().size(), 1U);
    EXPECT_THAT(outcome.err, HasSubstr("it lies more than 2048 folders deep"));
}

class FindTest : public TreeTest {};

TEST_F(FindTest, EverythingIsFoundWithoutConditions) {
    EXPECT_THAT(jstore({"find", at("d")}), Prints(at("d") + '\n' + at("d/e") + '\n' + at("d/e/f%20x") + '\n' +
                                                  at("d/e/up") + '\n' + at("d/z") + '\n'));
}

TEST_F(FindTest, NameAndTypeNarrowTheSearch) {
    EXPECT_THAT(jstore({"find", at("d"), "--name", "?"}), Prints(at("d") + '\n' + at("d/e") + '\n' + at("d/z") + '\n'));
    EXPECT_THAT(jstore({"find", "--type", "f", at("d")}), Prints(at("d/e/f%20x") + '\n' + at("d/z") + '\n'));
    EXPECT_THAT(jstore({"find", "--type", "folder", "--name", "e*", at("d")}), Prints(at("d/e") + '\n'));
    EXPECT_THAT(jstore({"find", "--name", "[z]", at("d")}), IsSilentlyDone());
}

TEST_F(FindTest, LocationsFoundAreTakenByOtherVerbs) {
    const auto found = jstore({"find", "--name", "f*", at("d")}).outLines();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(jstore({"rm", found.front()}), IsSilentlyDone());
    EXPECT_FALSE(fs::exists(m_folder / "d/e/f x"));
}

TEST_F(FindTest, WrongConditionsAreTwo) {
    EXPECT_THAT(jstore({"find", "--type", "x", at("d")}), FailsWith(2, HasSubstr("--type")));
}

TEST_F(FindTest, OthersFollowAFailure) {
    const auto outcome = jstore({"find", at("none"), "--name", "z", at("d")});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_EQ(outcome.out, at("d/z") + '\n');
    EXPECT_EQ(outcome.err, "jstore: NotFound: " + at("none") + '\n');
}

TEST_F(FindTest, JsonHasTheType) {
    const auto objects = objectsOf(jstore({"--json", "find", "--name", "z", at("d")}));
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0], json({{"verb", "find"}, {"location", at("d/z")}, {"type", "file"}, {"ok", true}}));
}

}  // namespace

}  // namespace jstore::test
