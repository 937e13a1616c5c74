#include "CommandLine.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "base/Problem.h"
#include "options/Arguments.h"

namespace jstore {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class CommandLineTest : public ::testing::Test {
protected:
    std::string parse(std::vector<const char*> arguments) {
        arguments.insert(arguments.begin(), "jstore");
        return m_commandLine.parse(static_cast<int>(arguments.size()), arguments.data());
    }

    [[nodiscard]] std::string complaintAbout(std::vector<const char*> arguments) {
        try {
            ADD_FAILURE() << "accepted: " << parse(std::move(arguments));
        } catch (const CommandError& error) {
            EXPECT_EQ(error.problem().exitCode, ExitCode::Usage);
            return errorLine(error.problem());
        }
        return {};
    }

    CommandLine m_commandLine;
};

TEST_F(CommandLineTest, VerbIsChosen) {
    EXPECT_EQ(parse({"mkdir", "-p", "a"}), "");
    EXPECT_EQ(m_commandLine.verbName(), "mkdir");
}

TEST_F(CommandLineTest, CommonOptionsGoBeforeOrAfterTheVerb) {
    parse({"--jvm-option", "-Xmx1g", "rm", "a", "--json", "--jvm-option=-Da=b", "--log", "trace", "--provider", "a.B"});
    EXPECT_TRUE(m_commandLine.options().json);
    EXPECT_EQ(m_commandLine.options().logLevel, LogLevel::Trace);
    EXPECT_EQ(m_commandLine.options().provider, "a.B");
    EXPECT_THAT(m_commandLine.options().jvmOptions, ElementsAre("-Xmx1g", "-Da=b"));
}

TEST_F(CommandLineTest, OptionTakesOneValue) {
    parse({"--mount", "a=/x", "--mount", "b=/y", "--class-path", "p:q", "--java-home", "/j", "exists", "z"});
    ASSERT_EQ(m_commandLine.options().mounts.size(), 2U);
    EXPECT_EQ(m_commandLine.options().mounts.back().uri, "file:///y");
    EXPECT_THAT(m_commandLine.options().classPath, ElementsAre("p:q"));
    EXPECT_EQ(m_commandLine.options().javaHome, "/j");
}

TEST_F(CommandLineTest, LogIsOffUnlessAskedFor) {
    parse({"touch", "a"});
    EXPECT_EQ(m_commandLine.options().logLevel, LogLevel::Off);
    EXPECT_FALSE(m_commandLine.options().json);
}

TEST_F(CommandLineTest, MissingVerbIsNamed) {
    EXPECT_EQ(complaintAbout({}), "jstore: a verb is missing (see jstore --help)");
}

TEST_F(CommandLineTest, UnknownVerbIsNamed) {
    EXPECT_EQ(complaintAbout({"frobnicate", "x"}), "jstore: unknown verb frobnicate (see jstore --help)");
}

TEST_F(CommandLineTest, UnknownOptionIsNamed) {
    EXPECT_EQ(complaintAbout({"rm", "--force", "x"}), "jstore: rm: unexpected argument --force (see jstore rm --help)");
    EXPECT_THAT(complaintAbout({"--frob", "rm", "x"}), HasSubstr("--frob"));
}

TEST_F(CommandLineTest, MissingLocationsAreReportedWithTheVerb) {
    EXPECT_THAT(complaintAbout({"mkdir"}), HasSubstr("see jstore mkdir --help"));
}

TEST_F(CommandLineTest, MoveNeedsTwo) { EXPECT_THAT(complaintAbout({"mv", "a"}), HasSubstr("see jstore mv --help")); }

TEST_F(CommandLineTest, UnknownLogLevelIsNamed) {
    EXPECT_EQ(complaintAbout({"--log", "loud", "touch", "x"}),
              "jstore: touch: --log: loud is not one of off, failures, progress, trace (see jstore touch --help)");
}

TEST_F(CommandLineTest, OptionWithoutItsValueIsNamed) {
    EXPECT_EQ(complaintAbout({"watch", "--count"}), "jstore: watch: --count needs a value (see jstore watch --help)");
    EXPECT_EQ(complaintAbout({"--mount"}), "jstore: --mount needs a value (see jstore --help)");
}

TEST_F(CommandLineTest, WordsOfAnOptionAreInTheGrammar) {
    const auto grammar = m_commandLine.grammar();
    const auto log = std::find_if(grammar.options.begin(), grammar.options.end(),
                                  [](const manual::Option& option) { return option.names.front() == "--log"; });
    ASSERT_NE(log, grammar.options.end());
    EXPECT_THAT(log->words, ElementsAre("off", "failures", "progress", "trace"));
    for (const auto& verb : grammar.verbs) {
        EXPECT_FALSE(verb.help.summary.empty()) << verb.name;
        EXPECT_FALSE(verb.help.examples.empty()) << verb.name;
    }
}

TEST_F(CommandLineTest, WrongMountIsNamed) {
    EXPECT_THAT(complaintAbout({"--mount", "x", "touch", "y"}), HasSubstr("NAME=URI"));
}

class ArgumentsTest : public ::testing::Test {
protected:
    void read(std::vector<const char*> arguments) {
        CLI::App app;
        auto& verb = *app.add_subcommand("verb");
        app.add_subcommand("other");
        app.require_subcommand(1);
        verb.fallthrough();
        verb.add_flag("-f", m_flag);
        addArguments(verb, "NAME", m_names, "");
        arguments.insert(arguments.begin(), {"program", "verb"});
        app.parse(markedArguments(static_cast<int>(arguments.size()), arguments.data()));
    }

    std::vector<std::string> m_names;
    bool m_flag = false;
};

TEST_F(ArgumentsTest, AwkwardNamesArriveAsTheyAre) {
    read({"[a,b]", "%%", "", "\x01x", "other", "verb", "-", "a=b", "{}", "[", "++"});
    EXPECT_THAT(m_names, ElementsAre("[a,b]", "%%", "", "\x01x", "other", "verb", "-", "a=b", "{}", "[", "++"));
}

TEST_F(ArgumentsTest, EverythingAfterTwoDashesIsAName) {
    read({"a", "--", "-f", "--", "--help", "[x]", ""});
    EXPECT_THAT(m_names, ElementsAre("a", "-f", "--", "--help", "[x]", ""));
    EXPECT_FALSE(m_flag);
}

TEST_F(ArgumentsTest, OptionsMixWithNames) {
    read({"a", "-f", "b"});
    EXPECT_THAT(m_names, ElementsAre("a", "b"));
    EXPECT_TRUE(m_flag);
}

}  // namespace

}  // namespace jstore
