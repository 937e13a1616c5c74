#include <gmock/gmock.h>

#include <cstdlib>

#include "CapturedOutput.h"
#include "OwnProcess.h"
#include "TemporaryFolder.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace {

using foundation::core::except::detail::AnonymousInternalException;
using storage::jvm::EmbeddedJVM;
using storage::jvm::EmbeddedJVMOptions;
using test::inOwnProcess;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string failureOf(const EmbeddedJVMOptions& options) {
    try {
        static_cast<void>(EmbeddedJVM::start(options));
    } catch (const AnonymousInternalException<std::runtime_error>& error) {
        return error.what();
    }
    return "it started";
}

EmbeddedJVMOptions withOptions(std::vector<std::string> jvmOptions) {
    EmbeddedJVMOptions options;
    options.jvmOptions = std::move(jvmOptions);
    return options;
}

/// The start fails with the machine's own words, silently; the machine has tried to end the process, so no other can be
/// made, and the process goes on to its orderly end.
void expectHalfWayFailure(const EmbeddedJVMOptions& options, const std::string& words) {
    const test::CapturedOutput output;
    EXPECT_THAT(failureOf(options), AllOf(HasSubstr(words), HasSubstr("tried to end the process")));
    EXPECT_THAT(failureOf({}), AllOf(HasSubstr(words), HasSubstr("No virtual machine can start after")));
    EXPECT_EQ(output.text(), "");
}

TEST(FailedStartTest, UnknownOptionFailsWithTheMachinesWords) {
    inOwnProcess([] {
        const test::CapturedOutput output;
        EXPECT_THAT(failureOf(withOptions({"-XX:+Nonsense"})),
                    AllOf(HasSubstr("Unrecognized VM option 'Nonsense'"), HasSubstr("libjvm.so")));
        EXPECT_EQ(output.text(), "");
    });
}

TEST(FailedStartTest, StartAfterAnUnknownOptionSucceeds) {
    inOwnProcess([] {
        EXPECT_THAT(failureOf(withOptions({"-nonsense"})), HasSubstr("Unrecognized option: -nonsense"));
        const auto jvm = EmbeddedJVM::start();
        const storage::jvm::JVMWrapper wrapper(jvm->getJavaVM());
    });
}

TEST(FailedStartTest, HeapThatCannotBeHadLeavesTheProcessAlive) {
    inOwnProcess([] { expectHalfWayFailure(withOptions({"-Xmx99999999g"}), "Could not reserve enough space for"); });
}

TEST(FailedStartTest, OptionsAtOddsLeaveTheProcessAlive) {
    inOwnProcess([] {
        expectHalfWayFailure(withOptions({"-XX:+UseG1GC", "-XX:+UseSerialGC"}), "Multiple garbage collectors selected");
    });
}

TEST(FailedStartTest, MissingAgentLeavesTheProcessAlive) {
    inOwnProcess(
        [] { expectHalfWayFailure(withOptions({"-agentlib:nowhere"}), "Could not find agent library nowhere"); });
}

// Each of them prints and exits by the system's functions, not by the machine's hooks.
TEST(FailedStartTest, OptionsThatEndTheMachineLeaveTheProcessAlive) {
    inOwnProcess([] { expectHalfWayFailure(withOptions({"-XX:+PrintFlagsInitial"}), "[Global flags]"); });
    inOwnProcess([] { expectHalfWayFailure(withOptions({"-Xlog:help"}), "-Xlog Usage"); });
    inOwnProcess([] { expectHalfWayFailure(withOptions({"-Xinternalversion"}), "VM ("); });
}

TEST(FailedStartTest, FileOfOptionsThatIsMissingIsNamedSilently) {
    inOwnProcess([] {
        const test::CapturedOutput output;
        EXPECT_THAT(failureOf(withOptions({"-XX:VMOptionsFile=/nowhere"})), HasSubstr("/nowhere"));
        setenv("JAVA_TOOL_OPTIONS", "-XX:Flags=/nowhere", 1);
        EXPECT_THAT(failureOf({}), AllOf(HasSubstr("JAVA_TOOL_OPTIONS"), HasSubstr("/nowhere")));
        EXPECT_EQ(output.text(), "");
    });
}

TEST(FailedStartTest, VariablesThatAddOptionsAreNamed) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-XX:+Nonsense", 1);
        setenv("_JAVA_OPTIONS", "-Dsome=thing", 1);
        EXPECT_THAT(failureOf({}),
                    AllOf(HasSubstr("'Nonsense'"), HasSubstr("JAVA_TOOL_OPTIONS=-XX:+Nonsense, _JAVA_OPTIONS=-Dsome")));
        unsetenv("JAVA_TOOL_OPTIONS");
        unsetenv("_JAVA_OPTIONS");
        EXPECT_THAT(failureOf(withOptions({"-nonsense"})), Not(HasSubstr("options were added")));
    });
}

TEST(FailedStartTest, ArchiveInPlaceOfAStartIsRefusedAndAnotherStartMayFollow) {
    inOwnProcess([] {
        const test::TemporaryFolder folder;
        const std::string archive = (folder.path() / "classes.jsa").string();
        for (const char* const variable : {"JAVA_TOOL_OPTIONS", "_JAVA_OPTIONS"}) {
            setenv(variable, ("-Xshare:dump -XX:SharedArchiveFile=" + archive).c_str(), 1);
            EXPECT_THAT(failureOf({}), AllOf(HasSubstr(variable), HasSubstr("-Xshare:dump"), HasSubstr("archive")));
            unsetenv(variable);
        }
        EXPECT_FALSE(std::filesystem::exists(archive));
        EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr);
    });
}

TEST(FailedStartTest, LocaleAndEnvironmentAreRestoredAfterAHalfWayFailure) {
    inOwnProcess([] {
        setenv("LC_ALL", "C", 1);
        setlocale(LC_ALL, "C");
        EXPECT_THAT(failureOf(withOptions({"-Xmx99999999g"})), HasSubstr("tried to end the process"));
        EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
        EXPECT_STREQ(getenv("LC_ALL"), "C");
    });
}

TEST(FailedStartTest, MissingJarIsNamedBeforeTheStart) {
    inOwnProcess([] {
        EmbeddedJVMOptions options;
        options.classPath = {"/usr", "/nowhere/missing.jar"};
        EXPECT_THAT(failureOf(options), HasSubstr("/nowhere/missing.jar"));
        EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr);
    });
}

TEST(FailedStartTest, ColonOnTheClassPathIsRefused) {
    inOwnProcess([] {
        const test::TemporaryFolder folder;
        EmbeddedJVMOptions options;
        options.classPath = {folder.path() / "a:b"};
        std::filesystem::create_directory(options.classPath.front());
        EXPECT_THAT(failureOf(options), AllOf(HasSubstr("colon"), HasSubstr("a:b")));
    });
}

TEST(FailedStartTest, QuoteWithoutItsMateInTheEnvironmentIsRefused) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-Dx='1", 1);
        EXPECT_THAT(failureOf({}), HasSubstr("JAVA_TOOL_OPTIONS"));
    });
}

TEST(FailedStartTest, UselessHomesAreFallenThrough) {
    inOwnProcess([] {
        const test::TemporaryFolder empty;
        setenv("JAVA_HOME", "/nowhere", 1);
        EmbeddedJVMOptions options;
        options.javaHome = empty.path();
        const auto candidates = storage::jvm::findJava(options);
        ASSERT_GE(candidates.size(), 3U);
        EXPECT_EQ(candidates[0].problem, "no lib/server/libjvm.so in it");
        EXPECT_EQ(candidates[1].problem, "no such folder");
        const auto usable = std::ranges::find(candidates, "", &storage::jvm::JavaCandidate::problem);
        ASSERT_NE(usable, candidates.end());
        EXPECT_EQ(EmbeddedJVM::start(options)->libjvm(), usable->libjvm);
    });
}

}  // namespace
