#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

struct Refusal {
    const char* javaCode;
    const char* name;
    int exitCode;
};

class ErrorCodeTest : public ::testing::TestWithParam<Refusal> {
protected:
    static Outcome remove(const std::string& location) {
        return jstore({"--provider", "com.corvallen.jstore.test.CodeProvider", "--class-path", JSTORE_TEST_BACKENDS,
                       "rm", location});
    }
};

TEST_P(ErrorCodeTest, CodeOfTheBackEndHasNameAndExitCode) {
    const auto location = std::string("java:///") + GetParam().javaCode;
    EXPECT_THAT(remove(location), FailsWith(GetParam().exitCode,
                                            StartsWith(std::string("jstore: ") + GetParam().name + ": " + location)));
}

INSTANTIATE_TEST_SUITE_P(
    Codes, ErrorCodeTest,
    ::testing::Values(Refusal{"UNKNOWN", "Unknown", 1}, Refusal{"NOT_FOUND", "NotFound", 3},
                      Refusal{"ALREADY_EXISTS", "AlreadyExists", 4}, Refusal{"ACCESS_DENIED", "AccessDenied", 5},
                      Refusal{"NOT_A_FILE", "NotAFile", 1}, Refusal{"NOT_A_FOLDER", "NotAFolder", 1},
                      Refusal{"FOLDER_NOT_EMPTY", "FolderNotEmpty", 1}, Refusal{"NOT_SUPPORTED", "NotSupported", 8},
                      Refusal{"INVALID_LOCATION", "InvalidLocation", 1}, Refusal{"STORAGE_FULL", "StorageFull", 1},
                      Refusal{"IN_USE", "InUse", 1}, Refusal{"UNAVAILABLE", "Unavailable", 1}),
    [](const auto& value) { return std::string(value.param.name); });

TEST_F(ErrorCodeTest, ErrorWithoutALocationNamesTheArgument) {
    EXPECT_THAT(remove("java:///IN_USE/nowhere"), FailsWith(1, "jstore: InUse: java:///IN_USE/nowhere"));
}

TEST(RefusalTest, SystemFolderRefuses) {
    EXPECT_THAT(jstore({"touch", "java:///sys/jstore-test"}),
                FailsWith(5, "jstore: AccessDenied: java:///sys/jstore-test"));
}

TEST(RefusalTest, ReadOnlyFileSystemRefuses) {
    EXPECT_THAT(jstore({"--mount", "runtime=jrt:/", "touch", "java://runtime/x"}),
                FailsWith(5, "jstore: AccessDenied: java://runtime/x"));
}

TEST(NoJavaTest, GivenHomeWithoutJavaIsSeven) {
    const TemporaryFolder home;
    EXPECT_THAT(
        jstore({"--java-home", home.path().string(), "touch", "x"}),
        FailsWith(7, AllOf(StartsWith("jstore: no Java found: "), HasSubstr("given home " + home.path().string()))));
}

TEST(NoJavaTest, LibraryThatCannotBeLoadedIsSeven) {
    const TemporaryFolder home;
    home.folder("lib/server");
    home.file("lib/server/libjvm.so", "no library");
    EXPECT_THAT(jstore({"--java-home", home.path().string(), "touch", "x"}), FailsWith(7, HasSubstr("libjvm.so")));
}

TEST(NoJavaTest, GivenHomeIsTheOnlyOneTried) {
    const auto outcome = Jstore({"--java-home", "/nonexistent", "touch", "x"}).with("JAVA_HOME", "/elsewhere").run();
    EXPECT_EQ(7, outcome.exitCode);
    EXPECT_THAT(outcome.err, ::testing::Not(HasSubstr("/elsewhere")));
    EXPECT_THAT(outcome.err, ::testing::Not(HasSubstr("/usr/lib/jvm")));
}

TEST(NoJavaTest, WrongOptionOfTheMachineIsToldInItsWords) {
    EXPECT_THAT(jstore({"--jvm-option", "-XX:+NoSuchOption", "touch", "x"}),
                FailsWith(1, AllOf(StartsWith("jstore: Java does not start: "), HasSubstr("NoSuchOption"))));
}

TEST(NoJavaTest, EnvironmentOptionsPrintNothing) {
    const auto outcome = Jstore({"exists", "/"}).with("JAVA_TOOL_OPTIONS", "-Dsome.property=x").run();
    EXPECT_THAT(outcome, Prints("folder\n"));
}

}  // namespace

}  // namespace jstore::test
