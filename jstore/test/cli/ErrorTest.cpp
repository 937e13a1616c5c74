#include <filesystem>

#include "support/FolderTest.h"
#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
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

TEST_F(ErrorCodeTest, MessageOfTheBackEndIsTheReason) {
    EXPECT_THAT(remove("java:///IN_USE/why/it%20is%20open%20elsewhere"),
                FailsWith(1, "jstore: InUse: java:///IN_USE/why/it%20is%20open%20elsewhere: it is open elsewhere"));
    EXPECT_THAT(remove("java:///NOT_FOUND/why/does%20not%20exist"),
                FailsWith(3, "jstore: NotFound: java:///NOT_FOUND/why/does%20not%20exist"));
    EXPECT_THAT(remove("java:///UNKNOWN/nowhere/why/gone"),
                FailsWith(1, "jstore: Unknown: java:///UNKNOWN/nowhere/why/gone: gone"));
}

TEST_F(ErrorCodeTest, ReasonIsOneHarmlessLine) {
    EXPECT_THAT(remove("java:///IN_USE/why/one%0A%09two%1B%5B31m%E2%80%AE"),
                FailsWith(1, EndsWith(": one two [31m%E2%80%AE")));
    const auto outcome = remove("java:///IN_USE/why/" + std::string(100'000, 'x'));
    EXPECT_THAT(outcome.err, EndsWith("x\n"));
    EXPECT_LT(outcome.err.size(), 100'000U + 500U);
}

class RefusalTest : public FolderTest {
protected:
    [[nodiscard]] std::string error(const char* code, std::string_view name) const {
        return std::string("jstore: ") + code + ": " + at(name);
    }
};

TEST_F(RefusalTest, SystemFolderRefuses) {
    EXPECT_THAT(jstore({"touch", "java:///sys/jstore-test"}),
                FailsWith(5, AnyOf("jstore: AccessDenied: java:///sys/jstore-test: permission denied",
                                   "jstore: AccessDenied: java:///sys/jstore-test: operation not permitted",
                                   "jstore: AccessDenied: java:///sys/jstore-test: read-only file system")));
}

TEST_F(RefusalTest, ReadOnlyFileSystemRefuses) {
    EXPECT_THAT(jstore({"--mount", "runtime=jrt:/", "touch", "java://runtime/x"}),
                FailsWith(5, "jstore: AccessDenied: java://runtime/x: read-only file system"));
}

TEST_F(RefusalTest, LoopOfLinksIsNamed) {
    std::filesystem::create_symlink("loop", m_folder / "loop");
    EXPECT_THAT(jstore({"touch", at("loop/x")}),
                FailsWith(1, error("InvalidLocation", "loop/x") + ": too many symbolic links"));
}

TEST_F(RefusalTest, NameThatIsTooLongIsNamed) {
    const std::string name(300, 'x');
    EXPECT_THAT(jstore({"touch", at(name)}), FailsWith(1, error("InvalidLocation", name) + ": file name too long"));
}

TEST_F(RefusalTest, MoveIntoItselfIsNamed) {
    m_folder.folder("a");
    EXPECT_THAT(jstore({"mv", at("a"), at("a/b")}),
                FailsWith(1, error("InvalidLocation", "a/b") + ": lies inside the folder to be moved"));
}

TEST_F(RefusalTest, PlainErrorsStayShort) {
    m_folder.folder("a/b");
    m_folder.file("file");
    EXPECT_THAT(jstore({"cat", at("none")}), FailsWith(3, error("NotFound", "none")));
    EXPECT_THAT(jstore({"mkdir", at("a")}), FailsWith(4, error("AlreadyExists", "a")));
    EXPECT_THAT(jstore({"cat", at("a")}), FailsWith(1, error("NotAFile", "a")));
    EXPECT_THAT(jstore({"mkdir", at("file/x")}), FailsWith(1, StartsWith(error("NotAFolder", "file/x"))));
}

TEST_F(RefusalTest, ArchiveThatCannotBeOpenedSaysWhy) {
    m_folder.file("a.zip", "this is no archive");
    EXPECT_THAT(jstore({"--mount", "z=jar:file://" + (m_folder / "a.zip").string(), "ls", "java://z/"}),
                FailsWith(1, AllOf(StartsWith("jstore: Unavailable: java://z/: "), HasSubstr("a.zip"),
                                   HasSubstr("cannot be opened: "), ContainsRegex("zip END header|END header"))));
}

TEST_F(RefusalTest, JsonHasTheReasonInAFieldOfItsOwn) {
    const std::string name(300, 'x');
    const auto objects = objectsOf(jstore({"--json", "touch", at(name), at("none/x")}));
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0]["error"]["reason"], "file name too long");
    EXPECT_EQ(objects[0]["error"]["message"], "file name too long");
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
    EXPECT_EQ(outcome.exitCode, 7);
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
