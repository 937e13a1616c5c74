#include "support/FolderTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

namespace fs = std::filesystem;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

namespace {

class LsTest : public FolderTest {
protected:
    LsTest() {
        m_folder.file("b.txt", "12345");
        m_folder.file("a b.txt");
        m_folder.file("c.dat");
        m_folder.folder("d/e");
        m_folder.file("d/e/f.txt");
    }

    [[nodiscard]] std::string top() const { return "java://" + m_folder.path().string(); }
};

TEST_F(LsTest, NamesComeInOrder) { EXPECT_THAT(jstore({"ls", top()}), Prints("a b.txt\nb.txt\nc.dat\nd\n")); }

TEST_F(LsTest, LocalPathIsListed) { EXPECT_THAT(Jstore({"ls", "d"}).in(m_folder.path()).run(), Prints("e\n")); }

TEST_F(LsTest, EmptyFolderPrintsNothing) {
    m_folder.folder("empty");
    EXPECT_THAT(jstore({"ls", at("empty")}), IsSilentlyDone());
}

TEST_F(LsTest, FileIsNamedAsItWasGiven) { EXPECT_THAT(jstore({"ls", at("b.txt")}), Prints(at("b.txt") + '\n')); }

TEST_F(LsTest, MissingIsThree) {
    EXPECT_THAT(jstore({"ls", at("none")}), FailsWith(3, "jstore: NotFound: " + at("none")));
}

TEST_F(LsTest, FilesOrFoldersAlone) {
    EXPECT_THAT(jstore({"ls", "--files", top()}), Prints("a b.txt\nb.txt\nc.dat\n"));
    EXPECT_THAT(jstore({"ls", "--folders", top()}), Prints("d\n"));
    EXPECT_EQ(jstore({"ls", "--files", "--folders", top()}).exitCode, 2);
}

TEST_F(LsTest, WildcardsFitTheLastName) {
    EXPECT_THAT(jstore({"ls", at("*.txt")}), Prints("a b.txt\nb.txt\n"));
    EXPECT_THAT(jstore({"ls", at("%3F.*")}), Prints("b.txt\nc.dat\n"));
    EXPECT_THAT(Jstore({"ls", "?"}).in(m_folder.path()).run(), Prints("d\n"));
    EXPECT_THAT(jstore({"ls", at("x*")}), FailsWith(3, "jstore: NotFound: " + at("x*") + ": nothing matches"));
    EXPECT_EQ(jstore({"ls", at("none/*")}).exitCode, 3);
}

TEST_F(LsTest, NameThatExistsIsNoPattern) {
    m_folder.folder("*/inside");
    EXPECT_THAT(jstore({"ls", at("*")}), Prints("inside\n"));
}

TEST_F(LsTest, RecursiveShowsEachFolder) {
    EXPECT_THAT(jstore({"ls", "-R", top()}),
                Prints(top() + ":\na b.txt\nb.txt\nc.dat\nd\n\n" + at("d") + ":\ne\n\n" + at("d/e") + ":\nf.txt\n"));
    EXPECT_THAT(jstore({"ls", "-R", at("*.txt")}), Prints(top() + ":\na b.txt\nb.txt\n\n" + at("d/e") + ":\nf.txt\n"));
}

TEST_F(LsTest, LinkToAFolderIsNotEntered) {
    fs::create_directory_symlink("..", m_folder / "d/e/up");
    EXPECT_THAT(jstore({"ls", "-R", at("d")}), Prints(at("d") + ":\ne\n\n" + at("d/e") + ":\nf.txt\nup\n"));
}

TEST_F(LsTest, SeveralFoldersHaveHeadings) {
    const auto outcome = jstore({"ls", at("d"), at("none"), at("d/e")});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_EQ(outcome.out, at("d") + ":\ne\n\n" + at("d/e") + ":\nf.txt\n");
    EXPECT_EQ(outcome.err, "jstore: NotFound: " + at("none") + '\n');
}

TEST_F(LsTest, LongShowsTypeSizeAndTime) {
    ASSERT_TRUE(jstore({"touch", "-d", "2001-02-03T04:05:06Z", at("b.txt"), at("d")}).err.empty());
    EXPECT_THAT(jstore({"ls", "-l", at("%3F.txt")}), Prints("-w               5  2001-02-03T04:05:06.000Z  b.txt\n"));
    EXPECT_THAT(jstore({"ls", "-l", "--folders", top()}), Prints("dw               -  2001-02-03T04:05:06.000Z  d\n"));
}

TEST_F(LsTest, LongShowsSizesForPeople) {
    m_folder.file("big", std::string(1536, 'x'));
    EXPECT_THAT(jstore({"ls", "-lH", at("bi*")}), Prints(MatchesRegex("-w +1.5K  .*  big\n")));
}

TEST_F(LsTest, LinkThatLeadsNowhereIsShown) {
    m_folder.folder("links");
    fs::create_symlink("nowhere", m_folder / "links/link");
    EXPECT_THAT(jstore({"ls", "-l", at("links")}), Prints(MatchesRegex("-[?] +-  - +link\n")));
}

TEST_F(LsTest, ControlCharactersKeepToOneLine) {
    m_folder.file("d/a\nb");
    EXPECT_THAT(jstore({"ls", at("d")}), Prints("a%0Ab\ne\n"));
}

TEST_F(LsTest, NamesAreKeptApart) {
    m_folder.file("d/a%0Ab");
    m_folder.file("d/a\nb");
    m_folder.file("d/100%");
    EXPECT_THAT(jstore({"ls", at("d")}), Prints("100%\na%0Ab\na%250Ab\ne\n"));
}

/// What a terminal would obey: a control sequence in one character, and text from right to left.
TEST_F(LsTest, NamesOrderNothingFromATerminal) {
    m_folder.file(
        "d/\xC2\x9B"
        "31m\xE2\x80\xAE"
        "fdp.exe");
    const std::string shown = "%C2%9B31m%E2%80%AEfdp.exe";
    EXPECT_THAT(jstore({"ls", at("d")}), Prints("e\n" + shown + '\n'));
    EXPECT_THAT(jstore({"ls", "-R", at("d")}), Prints(HasSubstr('\n' + shown + '\n')));
    EXPECT_THAT(jstore({"tree", at("d")}), Prints(HasSubstr(' ' + shown + '\n')));
    EXPECT_THAT(jstore({"find", "--type", "f", at("d")}), Prints(HasSubstr(at("d/" + shown) + '\n')));
    EXPECT_THAT(jstore({"du", "-a", at("d")}), Prints(HasSubstr('\t' + at("d/" + shown) + '\n')));
    EXPECT_THAT(jstore({"stat", at("d/" + shown)}), Prints(HasSubstr(at("d/" + shown) + '\n')));
    EXPECT_THAT(jstore({"ls", (m_folder / "none\xC2\x9B").string()}),
                FailsWith(3, "jstore: NotFound: " + at("none%C2%9B")));
    EXPECT_THAT(jstore({"--json", "ls", at("d")}).out, HasSubstr(R"("name":"\u009b31m\u202efdp.exe")"));
}

TEST_F(LsTest, JsonHasAnObjectForEachEntry) {
    const auto objects = objectsOf(jstore({"--json", "ls", at("d")}));
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0],
              json({{"verb", "ls"}, {"location", at("d/e")}, {"name", "e"}, {"type", "folder"}, {"ok", true}}));
    const auto details = objectsOf(jstore({"--json", "ls", "-l", at("b*")}));
    ASSERT_EQ(details.size(), 1U);
    EXPECT_EQ(details[0]["size"], 5);
    EXPECT_EQ(details[0]["writable"], true);
    EXPECT_THAT(details[0]["lastModified"].get<std::string>(), MatchesRegex("20.*Z"));
}

TEST_F(LsTest, ArchiveIsListed) {
    const auto archive = m_folder.file("a.zip", contentOf(JSTORE_TEST_BACKENDS));
    EXPECT_THAT(jstore({"--mount", "zip=jar:file://" + archive.string(), "ls", "java://zip/com/corvallen"}),
                Prints("jstore\n"));
}

}  // namespace

}  // namespace jstore::test
