#include <fstream>
#include <sstream>

#include "support/Matchers.h"
#include "support/Screen.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

namespace {

/// Completion as the build makes it, in a real shell. jstore itself is not on the PATH of that shell.
class CompletionTest : public ::testing::Test {
protected:
    CompletionTest() {
        m_folder.folder("photos");
        m_folder.file("plan 1.txt");
        m_folder.file("plan#2.txt");
        m_folder.file("other");
    }

    /// Runs a script in bash, and gives its lines.
    [[nodiscard]] std::vector<std::string> bash(const std::string& script) const {
        const auto file = m_folder.file("script", script);
        const auto output = m_folder / "output";
        const auto command =
            "cd '" + m_folder.path().string() + "' && rm -f output; bash script >output 2>&1; rm script";
        EXPECT_EQ(std::system(command.c_str()), 0);
        std::istringstream in(contentOf(output));
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) {
            lines.push_back(line);
        }
        std::filesystem::remove(output);
        return lines;
    }

    /// What bash offers when it has cut the command line into these words and the cursor is at the end of the last.
    [[nodiscard]] std::vector<std::string> offers(const std::vector<std::string>& words) const {
        std::string script = "source '" JSTORE_SHARE "/jstore.bash'\nCOMP_WORDS=(jstore";
        for (const auto& word : words) {
            script += " '" + word + '\'';
        }
        script += ")\nCOMP_CWORD=" + std::to_string(words.size()) +
                  "\n$(complete -p jstore | sed 's/.*-F \\([^ ]*\\).*/\\1/')\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n";
        auto lines = bash(script);
        std::erase(lines, "");
        std::erase(lines, "script");
        std::erase(lines, "output");
        return lines;
    }

    TemporaryFolder m_folder;
};

TEST_F(CompletionTest, VerbsComeFirst) {
    EXPECT_THAT(offers({"m"}), ElementsAre("mkdir", "mv"));
    EXPECT_THAT(offers({""}), AllOf(Contains("ls"), Contains("doctor"), Contains("completion")));
    EXPECT_THAT(offers({"--json", "to"}), ElementsAre("touch"));
    EXPECT_THAT(offers({"--mount", "z", "=", "jar", ":", "file", ":", "///a.zip", "ls", "--fi"}),
                ElementsAre("--files"));
}

TEST_F(CompletionTest, OptionsFitTheVerb) {
    EXPECT_THAT(offers({"find", "--"}), AllOf(Contains("--name"), Contains("--type"), Contains("--json")));
    EXPECT_THAT(offers({"find", "--"}), Not(Contains("--files")));
    EXPECT_THAT(offers({"--lo"}), ElementsAre("--log"));
}

TEST_F(CompletionTest, ValuesOfOptions) {
    EXPECT_THAT(offers({"--log", "t"}), ElementsAre("trace"));
    EXPECT_THAT(offers({"--log", "="}), UnorderedElementsAre("off", "failures", "progress", "trace"));
    EXPECT_THAT(offers({"ls", "--log", "=", "f"}), ElementsAre("failures"));
    EXPECT_THAT(offers({"find", "--type", "f"}), ElementsAre("f", "file", "folder"));
    EXPECT_THAT(offers({"completion", "z"}), ElementsAre("zsh"));
    EXPECT_THAT(offers({"--java-home", "p"}), ElementsAre("photos"));
    EXPECT_THAT(offers({"doctor", "p"}), IsEmpty());
}

TEST_F(CompletionTest, LocalFilesAreLocations) {
    EXPECT_THAT(offers({"ls", "p"}), UnorderedElementsAre("photos", "plan 1.txt", "plan#2.txt"));
    EXPECT_THAT(offers({"cp", "-r", "photos", "o"}), ElementsAre("other"));
}

TEST_F(CompletionTest, LocationsHaveNamesThatNeedNoEncoding) {
    const auto begin = "//" + m_folder.path().string();
    EXPECT_THAT(offers({"ls", "java", ":", begin + "/p"}),
                UnorderedElementsAre(begin + "/photos", begin + "/plan 1.txt"));
}

TEST_F(CompletionTest, BashCompletesWhatIsTyped) {
    const auto file = m_folder.file("rc", "PS1='$ '; source '" JSTORE_SHARE "/jstore.bash'\n");
    Screen screen({"bash", "--rcfile", file.string(), "-i"});
    ASSERT_TRUE(screen.waitFor("$ "));
    screen.type("jstore comp\tz\t");
    EXPECT_TRUE(screen.waitFor("jstore completion zsh"));
    screen.type(
        "\x15"
        "exit 0\n");
    EXPECT_EQ(screen.finish(), 0);
}

TEST_F(CompletionTest, ZshAcceptsTheScript) { EXPECT_EQ(std::system("zsh -n '" JSTORE_SHARE "/_jstore'"), 0); }

TEST_F(CompletionTest, ZshCompletesWhatIsTyped) {
    m_folder.file(".zshrc", "PS1='%% '; unset zle_bracketed_paste; fpath=('" JSTORE_SHARE
                            "' $fpath); autoload -U compinit; compinit -u -D\n");
    Screen screen({"env", "ZDOTDIR=" + m_folder.path().string(), "zsh", "-d", "-i"}, {.terminal = "dumb"});
    ASSERT_TRUE(screen.waitFor("% "));
    screen.type("jstore comp\tz\t");
    EXPECT_TRUE(screen.waitFor("completion zsh")) << screen.raw();
    screen.type(
        "\x15"
        "jstore find --type=fo\t");
    EXPECT_TRUE(screen.waitFor("--type=folder"));
    screen.type(
        "\x15"
        "exit 0\n");
    EXPECT_EQ(screen.finish(), 0);
}

TEST_F(CompletionTest, PrintedScriptsAreTheInstalledOnes) {
    EXPECT_THAT(jstore({"--java-home", "/nonexistent", "completion", "bash"}),
                Prints(contentOf(JSTORE_SHARE "/jstore.bash")));
    EXPECT_THAT(jstore({"--java-home", "/nonexistent", "completion", "zsh"}),
                Prints(contentOf(JSTORE_SHARE "/_jstore")));
    EXPECT_THAT(jstore({"completion", "fish"}), FailsWith(2, HasSubstr("fish")));
    EXPECT_THAT(jstore({"completion"}), FailsWith(2, HasSubstr("SHELL")));
}

}  // namespace

}  // namespace jstore::test
