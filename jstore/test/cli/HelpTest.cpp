#include "support/Matchers.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// Nothing here may start a virtual machine: with this home it would end with 7.
Outcome withoutJava(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--java-home", "/nonexistent"});
    return jstore(std::move(arguments));
}

TEST(HelpTest, HelpListsVerbsOptionsAndExitCodes) {
    const auto outcome = withoutJava({"--help"});
    EXPECT_THAT(outcome,
                Prints(AllOf(HasSubstr("--provider CLASS "), HasSubstr("Usage: jstore [OPTIONS] VERB ..."),
                             HasSubstr("--class-path P"), HasSubstr("--mount NAME=URI"), HasSubstr("--jvm-option O"),
                             HasSubstr("--java-home PATH"), HasSubstr("--log LEVEL"), HasSubstr("--json"),
                             HasSubstr("--no-progress"), HasSubstr("--config KEY=VALUE"))));
    EXPECT_THAT(outcome, Prints(AllOf(HasSubstr("exists"), HasSubstr("mkdir"), HasSubstr("touch"), HasSubstr("mv"),
                                      HasSubstr("rm"), HasSubstr("doctor"), HasSubstr("\n  ls "),
                                      HasSubstr("\n  tree "), HasSubstr("\n  find "), HasSubstr("\n  stat "),
                                      HasSubstr("\n  cat "), HasSubstr("\n  cp "), HasSubstr("\n  du "),
                                      HasSubstr("\n  df "), HasSubstr("\n  watch "), HasSubstr("\n  features "))));
    EXPECT_THAT(outcome, Prints(AllOf(HasSubstr("Exit codes:"), HasSubstr("\n    7  "), HasSubstr("\n  129  "),
                                      HasSubstr("\n  130  "), HasSubstr("\n  143  "))));
}

TEST(HelpTest, LinesFitATerminal) {
    for (const auto* const verb : {"", "ls", "tree", "find", "stat", "exists", "cat", "cp", "mkdir", "touch", "mv",
                                   "rm", "du", "df", "watch", "features", "doctor", "completion"}) {
        const auto outcome = *verb == 0 ? jstore({"--help"}) : jstore({verb, "--help"});
        for (const auto& line : outcome.outLines()) {
            EXPECT_LE(line.size(), 100U) << line;
        }
    }
}

TEST(HelpTest, VersionIsALine) { EXPECT_THAT(withoutJava({"--version"}), Prints(StartsWith("jstore "))); }

class VerbHelpTest : public ::testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(VerbHelpTest, HelpTellsAboutTheVerb) {
    const auto [verb, words] = GetParam();
    const auto outcome = withoutJava({verb, "--help"});
    EXPECT_THAT(outcome, Prints(AllOf(HasSubstr(words), HasSubstr(std::string("jstore ") + verb))));
    EXPECT_THAT(outcome, Prints(HasSubstr("jstore --help")));
    EXPECT_EQ(withoutJava({verb, "-h"}).out, outcome.out);
}

INSTANTIATE_TEST_SUITE_P(Verbs, VerbHelpTest,
                         ::testing::Values(std::pair("exists", "file, folder or missing"),
                                           std::pair("mkdir", "--parents"), std::pair("touch", "--date TIME"),
                                           std::pair("mv", "--replace"), std::pair("rm", "--recursive"),
                                           std::pair("doctor", "what is wrong"), std::pair("ls", "--recursive"),
                                           std::pair("cat", "bytes"), std::pair("cp", "Ctrl-C"),
                                           std::pair("stat", "capacity"), std::pair("df", "how full"),
                                           std::pair("du", "--summary"), std::pair("tree", "FOLDER..."),
                                           std::pair("find", "--name PATTERN"), std::pair("completion", "bash"),
                                           std::pair("watch", "--exec CMD"), std::pair("features", "yes or no")),
                         [](const auto& value) { return std::string(value.param.first); });

TEST(UsageTest, WrongCommandLinesStartNoJava) {
    EXPECT_THAT(withoutJava({}), FailsWith(2, HasSubstr("a verb is missing")));
    EXPECT_THAT(withoutJava({"frobnicate"}), FailsWith(2, HasSubstr("frobnicate")));
    EXPECT_THAT(withoutJava({"rm"}), FailsWith(2, HasSubstr("jstore rm --help")));
    EXPECT_THAT(withoutJava({"mv", "a"}), FailsWith(2, HasSubstr("jstore mv --help")));
    EXPECT_THAT(withoutJava({"rm", "--force", "a"}), FailsWith(2, HasSubstr("--force")));
    EXPECT_THAT(withoutJava({"--log", "loud", "rm", "a"}), FailsWith(2, HasSubstr("loud")));
    EXPECT_THAT(withoutJava({"--mount", "a", "rm", "a"}), FailsWith(2, HasSubstr("NAME=URI")));
    EXPECT_THAT(withoutJava({"--provider", "", "rm", "a"}), FailsWith(2, HasSubstr("--provider")));
    EXPECT_THAT(withoutJava({"rm", ""}), FailsWith(2, HasSubstr("empty")));
    EXPECT_THAT(withoutJava({"doctor", "x"}), FailsWith(2, HasSubstr("x")));
}

}  // namespace

}  // namespace jstore::test
