#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// Names that are awkward somewhere on the way: to a shell, a parser, a URI, a locale.
class NamesTest : public ::testing::TestWithParam<const char*> {
protected:
    [[nodiscard]] Outcome inFolder(std::vector<std::string> arguments, const std::string& locale = "C.UTF-8") const {
        return Jstore(std::move(arguments)).in(m_folder.path()).with("LC_ALL", locale).run();
    }

    TemporaryFolder m_folder;
};

TEST_P(NamesTest, LocalPathWorks) {
    const std::string name = GetParam();
    EXPECT_THAT(inFolder({"touch", "--", name}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_regular_file(m_folder / name));
    EXPECT_THAT(inFolder({"exists", "--", name}), Prints("file\n"));
}

TEST_P(NamesTest, LocalPathWorksUnderTheCLocale) {
    const std::string name = GetParam();
    EXPECT_THAT(inFolder({"mkdir", "--", name}, "C"), IsSilentlyDone());
    EXPECT_TRUE(fs::is_directory(m_folder / name));
}

INSTANTIATE_TEST_SUITE_P(Awkward, NamesTest,
                         ::testing::Values("with blank", " leading", "100%", "%41", "a#b", "a?b", "a+b&c=d;e", "-dash",
                                           "--help", "[a,b]", "%%",
                                           "gr\xC3\xBC\xC3\x9F"
                                           "e",
                                           "e\xCC\x81", "\xE6\x97\xA5\xE6\x9C\xAC", "\xF0\x9F\x98\x80", "a\\b", "\"q\"",
                                           "'q'", "a\nb", "a\tb", "$HOME", "*", "a:x", "mkdir", "{}", "^|`<>", "~"));

class IriNamesTest : public NamesTest {};

TEST_F(IriNamesTest, BlankAndEmojiAreTakenAsTheyAre) {
    EXPECT_THAT(jstore({"touch", m_folder.location("a b \xF0\x9F\x98\x80")}), IsSilentlyDone());
    EXPECT_TRUE(fs::exists(m_folder / "a b \xF0\x9F\x98\x80"));
}

TEST_F(IriNamesTest, EscapesAreDecoded) {
    EXPECT_THAT(jstore({"touch", m_folder.location("a%20b%23%3F%25%F0%9F%98%80")}), IsSilentlyDone());
    EXPECT_TRUE(fs::exists(m_folder / "a b#?%\xF0\x9F\x98\x80"));
}

TEST_F(IriNamesTest, PercentThatBeginsNoEscapeIsItself) {
    EXPECT_THAT(jstore({"touch", m_folder.location("100%"), m_folder.location("5%zz")}), IsSilentlyDone());
    EXPECT_TRUE(fs::exists(m_folder / "100%"));
    EXPECT_TRUE(fs::exists(m_folder / "5%zz"));
}

TEST_F(IriNamesTest, HashAndQuestionMarkAreRefusedBeforeAnythingIsDone) {
    EXPECT_THAT(jstore({"touch", m_folder.location("a"), m_folder.location("a#b")}),
                FailsWith(2, "jstore: InvalidLocation: " + m_folder.location("a#b") + ": write # in a name as %23"));
    EXPECT_THAT(jstore({"touch", m_folder.location("a?b")}), FailsWith(2, HasSubstr("%3F")));
    EXPECT_FALSE(fs::exists(m_folder / "a"));
}

TEST_F(IriNamesTest, EncodedSlashIsRefusedByTheBackEnd) {
    EXPECT_THAT(jstore({"touch", m_folder.location("a%2Fb")}), FailsWith(1, StartsWith("jstore: InvalidLocation: ")));
}

TEST_F(IriNamesTest, BytesThatAreNotUtf8AreRefused) {
    EXPECT_THAT(jstore({"touch", m_folder.location("gr\xFCn")}), FailsWith(2, HasSubstr("not UTF-8")));
    EXPECT_TRUE(fs::is_empty(m_folder.path()));
}

TEST_F(IriNamesTest, OtherSchemeIsRefused) {
    EXPECT_THAT(jstore({"touch", "http://host/x"}), FailsWith(2, HasSubstr("java://")));
}

TEST_F(IriNamesTest, ErrorNamesTheLocationAsItWasGiven) {
    EXPECT_THAT(jstore({"rm", m_folder.location("a b \xF0\x9F\x98\x80")}),
                FailsWith(3, "jstore: NotFound: " + m_folder.location("a b \xF0\x9F\x98\x80")));
    EXPECT_THAT(jstore({"rm", m_folder.location("a\nb")}),
                FailsWith(3, "jstore: NotFound: " + m_folder.location("a%0Ab")));
}

/// A name in Latin-1, as a shell's `*` gives it.
class RawNamesTest : public IriNamesTest {
protected:
    static constexpr const char* Raw = "gr\xFCn";
    static constexpr const char* Shown = "gr\xEE\xBF\xBCn";
};

TEST_F(RawNamesTest, EveryVerbTakesThem) {
    EXPECT_THAT(inFolder({"mkdir", Raw}), IsSilentlyDone());
    const auto file = std::string(Raw) + "/\xE9";
    EXPECT_THAT(inFolder({"touch", file}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_regular_file(m_folder / file));
    m_folder.file(file, "content");
    EXPECT_THAT(inFolder({"cat", file}), Prints("content"));
    EXPECT_THAT(inFolder({"ls", Raw}), Prints("\xEE\xBF\xA9\n"));
    EXPECT_THAT(inFolder({"exists", file}), Prints("file\n"));
    EXPECT_THAT(inFolder({"stat", file}), Prints(HasSubstr("size        7\n")));
    EXPECT_THAT(inFolder({"du", "-s", Raw}), Prints(StartsWith("7\t")));
    EXPECT_THAT(inFolder({"df", Raw}), Prints(HasSubstr(Shown)));
    EXPECT_THAT(inFolder({"tree", Raw}), Prints(HasSubstr("1 file\n")));
    EXPECT_THAT(inFolder({"find", "--name", "\xE9", Raw}), Prints(HasSubstr("\xEE\xBF\xA9\n")));
    EXPECT_THAT(inFolder({"--mount", std::string("m=") + Raw, "ls", "java://m/"}), Prints("\xEE\xBF\xA9\n"));
    EXPECT_THAT(inFolder({"cp", file, "copy\xFF"}), IsSilentlyDone());
    EXPECT_THAT(inFolder({"mv", "copy\xFF", "moved\xFF"}), IsSilentlyDone());
    EXPECT_EQ(contentOf(m_folder / "moved\xFF"), "content");
    EXPECT_EQ(inFolder({"watch", "--for", "1ms", Raw}).exitCode, 0);
    EXPECT_THAT(inFolder({"rm", "-r", Raw, "moved\xFF"}), IsSilentlyDone());
    EXPECT_TRUE(fs::is_empty(m_folder.path()));
}

TEST_F(RawNamesTest, NamesAsTheyAreShownLeadBackToThem) {
    m_folder.file(Raw, "content");
    EXPECT_THAT(inFolder({"ls", "."}), Prints(std::string(Shown) + '\n'));
    EXPECT_THAT(inFolder({"cat", Shown}), Prints("content"));
    EXPECT_THAT(inFolder({"cat", m_folder.location(Shown)}), Prints("content"));
}

TEST_F(RawNamesTest, OneOfThemDoesNotKeepTheOthersFromBeingListed) {
    m_folder.file(Raw);
    m_folder.file("plain");
    EXPECT_THAT(inFolder({"ls", "--", Raw, "plain"}),
                Prints(m_folder.location(Shown) + '\n' + m_folder.location("plain") + '\n'));
}

TEST_F(RawNamesTest, ErrorsNameThem) {
    EXPECT_THAT(inFolder({"cat", Raw}), FailsWith(3, "jstore: NotFound: " + m_folder.location(Shown)));
}

}  // namespace

}  // namespace jstore::test
