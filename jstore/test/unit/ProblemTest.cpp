#include "base/Problem.h"

#include <gtest/gtest.h>

#include "foundation/storage/provider/Exception.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::StorageIRI;

namespace {

TEST(ProblemTest, LineNamesCodeAndLocation) {
    EXPECT_EQ(errorLine({"NotFound", "java:///tmp/x", "", ExitCode::NotFound}), "jstore: NotFound: java:///tmp/x");
}

TEST(ProblemTest, HintFollowsTheLocation) {
    EXPECT_EQ(errorLine({"NotAFile", "java:///x", "use -r", ExitCode::Failed}), "jstore: NotAFile: java:///x: use -r");
}

TEST(ProblemTest, ProblemOfTheWholeCommandIsItsText) {
    EXPECT_EQ(errorLine({"NoJava", "", "no Java found:\nhere; there", ExitCode::NoJava}),
              "jstore: no Java found: here; there");
}

TEST(ProblemTest, LineIsOneLineWhateverTheNames) {
    EXPECT_EQ(errorLine({"Internal", "java:///a\nb", "one\n\ttwo", ExitCode::Failed}),
              "jstore: Internal: java:///a%0Ab: one two");
}

TEST(ProblemTest, MessageIsTheTextOrTheMeaningOfTheCode) {
    EXPECT_EQ(messageOf({"NotAFile", "java:///x", "use -r", ExitCode::Failed}), "use -r");
    EXPECT_EQ(messageOf({"NotFound", "java:///x", "", ExitCode::Failed}), "nothing is there");
    for (int code = 0; code <= 12; ++code) {
        const std::string name(toString(static_cast<ErrorCode>(code)));
        EXPECT_NE(messageOf({name, "java:///x", "", ExitCode::Failed}), name);
    }
}

Problem withReason(const char* code, const char* text, std::string_view reason) {
    Problem problem{code, "java:///x", text, ExitCode::Failed};
    addReason(problem, reason);
    return problem;
}

TEST(ReasonTest, FollowsTheLocation) {
    const auto problem = withReason("InvalidLocation", "", "too many symbolic links");
    EXPECT_EQ(errorLine(problem), "jstore: InvalidLocation: java:///x: too many symbolic links");
    EXPECT_EQ(messageOf(problem), "too many symbolic links");
}

TEST(ReasonTest, TextSaysMore) {
    const auto problem = withReason("NotAFile", "use -r", "a folder is there");
    EXPECT_EQ(errorLine(problem), "jstore: NotAFile: java:///x: use -r");
    EXPECT_EQ(problem.reason, "a folder is there");
}

TEST(ReasonTest, WordsThatRepeatTheCodeAreNone) {
    for (const auto& [code, words] : {std::pair("NotFound", "Does not exist"),
                                      {"NotFound", "no such file or directory"},
                                      {"AlreadyExists", "exists"},
                                      {"NotAFile", "is a folder"},
                                      {"NotAFolder", "Not a directory"},
                                      {"FolderNotEmpty", "is not empty"},
                                      {"NotFound", ""},
                                      {"NotFound", " \n"}}) {
        EXPECT_EQ(withReason(code, "", words).reason, "") << code << words;
    }
    EXPECT_EQ(withReason("AccessDenied", "", "is a folder").reason, "is a folder");
}

TEST(ReasonTest, IsOneHarmlessLineThatEnds) {
    EXPECT_EQ(withReason("Unknown", "", "one\n\ttwo\xC2\x9B \xE2\x80\xAE").reason, "one two %E2%80%AE");
    const auto longest = withReason("Unknown", "", std::string(100'000, 'a') + "end").reason;
    EXPECT_EQ(longest.size(), 300U + 2U);
    EXPECT_TRUE(longest.ends_with("end"));
}

TEST(ProblemTest, WantOfMemoryNamesTheOption) {
    const Location subject(StorageIRI(u"java:///x"));
    const std::string line = "jstore: OutOfMemory: java:///x: Java is out of memory; --jvm-option -Xmx1g gives it more";
    EXPECT_EQ(errorLine(describe(std::bad_alloc(), subject)), line);
    for (const auto* const text : {"java.lang.OutOfMemoryError: Java heap space", "java.lang.OutOfMemoryError",
                                   "java.lang.OutOfMemoryError: GC overhead limit exceeded",
                                   "java.lang.RuntimeException: java.lang.OutOfMemoryError: Java heap space"}) {
        EXPECT_EQ(errorLine(describe(std::runtime_error(text), subject)), line);
    }
    EXPECT_EQ(describe(std::bad_alloc(), subject).exitCode, ExitCode::Failed);
}

TEST(ProblemTest, WantOfOtherMemoryIsInJavasWords) {
    const Location subject(StorageIRI(u"java:///x"));
    const std::runtime_error error("java.lang.OutOfMemoryError: unable to create native thread");
    EXPECT_EQ(errorLine(describe(error, subject)),
              "jstore: OutOfMemory: java:///x: Java is out of memory: unable to create native thread");
}

class DescribeTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string lineFor(ErrorCode code, std::u16string location) const {
        return errorLine(describe(Exception(code, StorageIRI(std::move(location))), m_subject));
    }

    Location m_subject{StorageIRI(u"java:///a b/\u00FC")};
};

TEST_F(DescribeTest, LocationIsSpelledAsTheUserDid) {
    EXPECT_EQ(lineFor(ErrorCode::NotFound, u"java:///a%20b/%C3%BC"), "jstore: NotFound: java:///a b/\xC3\xBC");
}

TEST_F(DescribeTest, OtherLocationIsNamed) {
    EXPECT_EQ(lineFor(ErrorCode::AlreadyExists, u"java:///c%20d"), "jstore: AlreadyExists: java:///c%20d");
}

TEST_F(DescribeTest, ErrorWithoutLocationConcernsTheSubject) {
    EXPECT_EQ(lineFor(ErrorCode::InUse, u""), "jstore: InUse: java:///a b/\xC3\xBC");
}

TEST_F(DescribeTest, OtherExceptionsAreInternal) {
    const auto problem = describe(std::runtime_error("broken\nin two"), m_subject);
    EXPECT_EQ(errorLine(problem), "jstore: Internal: java:///a b/\xC3\xBC: broken in two");
    EXPECT_EQ(problem.exitCode, ExitCode::Failed);
}

TEST_F(DescribeTest, ExitCodeFollowsTheErrorCode) {
    EXPECT_EQ(describe(Exception(ErrorCode::AccessDenied, StorageIRI()), m_subject).exitCode, ExitCode::Denied);
}

}  // namespace

}  // namespace jstore
