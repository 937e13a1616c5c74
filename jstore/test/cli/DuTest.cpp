#include "support/FolderTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

class DuTest : public FolderTest {
protected:
    DuTest() {
        m_folder.folder("d/e");
        m_folder.folder("d/empty");
        m_folder.file("d/one", "1");
        m_folder.file("d/e/big", std::string(2048, 'x'));
    }
};

TEST_F(DuTest, EachFolderHasItsSum) {
    EXPECT_THAT(jstore({"du", at("d")}),
                Prints("2048\t" + at("d/e") + "\n0\t" + at("d/empty") + "\n2049\t" + at("d") + '\n'));
}

TEST_F(DuTest, SummaryIsOneLineEach) {
    EXPECT_THAT(jstore({"du", "-s", at("d"), at("d/one")}), Prints("2049\t" + at("d") + "\n1\t" + at("d/one") + '\n'));
    EXPECT_THAT(jstore({"du", "-sH", at("d")}), Prints("2.0K\t" + at("d") + '\n'));
}

TEST_F(DuTest, AllShowsFiles) {
    EXPECT_THAT(jstore({"du", "-a", at("d/e")}), Prints("2048\t" + at("d/e/big") + "\n2048\t" + at("d/e") + '\n'));
    EXPECT_EQ(jstore({"du", "-a", "-s", at("d")}).exitCode, 2);
}

TEST_F(DuTest, LinksDoNotLoopAndThoseToNowhereCountNothing) {
    fs::create_directory_symlink("..", m_folder / "d/e/up");
    fs::create_symlink("nowhere", m_folder / "d/e/dangling");
    EXPECT_THAT(jstore({"du", "-s", at("d")}), Prints("2049\t" + at("d") + '\n'));
}

TEST_F(DuTest, MissingIsThree) {
    EXPECT_THAT(jstore({"du", at("none")}), FailsWith(3, "jstore: NotFound: " + at("none")));
}

TEST_F(DuTest, WhatFailsBelowIsTold) {
    const auto mount = "jail=" + (m_folder / "d").string();
    m_folder.file("outside", "secret");
    fs::create_symlink(m_folder / "outside", m_folder / "d/escape");
    const auto outcome = jstore({"--mount", mount, "du", "-s", "java://jail/"});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_EQ(outcome.err, "jstore: AccessDenied: java://jail/escape: a link leads out of the mount\n");
    EXPECT_EQ(outcome.out, "2049\tjava://jail/\n");
}

TEST_F(DuTest, JsonHasAnObjectForEachLine) {
    const auto objects = objectsOf(jstore({"--json", "du", at("d/e")}));
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0],
              json({{"verb", "du"}, {"location", at("d/e")}, {"type", "folder"}, {"size", 2048}, {"ok", true}}));
}

}  // namespace

}  // namespace jstore::test
