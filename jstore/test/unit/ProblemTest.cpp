#include "base/Problem.h"

#include <gtest/gtest.h>

#include "foundation/storage/provider/Exception.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::StorageIRI;

namespace {

TEST(ProblemTest, LineNamesCodeAndLocation) {
    EXPECT_EQ("jstore: NotFound: java:///tmp/x", errorLine({"NotFound", "java:///tmp/x", "", ExitCode::NotFound}));
}

TEST(ProblemTest, HintFollowsTheLocation) {
    EXPECT_EQ("jstore: NotAFile: java:///x: use -r", errorLine({"NotAFile", "java:///x", "use -r", ExitCode::Failed}));
}

TEST(ProblemTest, ProblemOfTheWholeCommandIsItsText) {
    EXPECT_EQ("jstore: no Java found: here; there",
              errorLine({"NoJava", "", "no Java found:\nhere; there", ExitCode::NoJava}));
}

TEST(ProblemTest, LineIsOneLineWhateverTheNames) {
    EXPECT_EQ("jstore: Internal: java:///a%0Ab: one two",
              errorLine({"Internal", "java:///a\nb", "one\n\ttwo", ExitCode::Failed}));
}

TEST(ProblemTest, MessageIsTheTextOrTheMeaningOfTheCode) {
    EXPECT_EQ("use -r", messageOf({"NotAFile", "java:///x", "use -r", ExitCode::Failed}));
    EXPECT_EQ("nothing is there", messageOf({"NotFound", "java:///x", "", ExitCode::Failed}));
    for (int code = 0; code <= 12; ++code) {
        const std::string name(toString(static_cast<ErrorCode>(code)));
        EXPECT_NE(name, messageOf({name, "java:///x", "", ExitCode::Failed}));
    }
}

Problem withReason(const char* code, const char* text, std::string_view reason) {
    Problem problem{code, "java:///x", text, ExitCode::Failed};
    addReason(problem, reason);
    return problem;
}

TEST(ReasonTest, FollowsTheLocation) {
    const auto problem = withReason("InvalidLocation", "", "too many symbolic links");
    EXPECT_EQ("jstore: InvalidLocation: java:///x: too many symbolic links", errorLine(problem));
    EXPECT_EQ("too many symbolic links", messageOf(problem));
}

TEST(ReasonTest, TextSaysMore) {
    const auto problem = withReason("NotAFile", "use -r", "a folder is there");
    EXPECT_EQ("jstore: NotAFile: java:///x: use -r", errorLine(problem));
    EXPECT_EQ("a folder is there", problem.reason);
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
        EXPECT_EQ("", withReason(code, "", words).reason) << code << words;
    }
    EXPECT_EQ("is a folder", withReason("AccessDenied", "", "is a folder").reason);
}

TEST(ReasonTest, IsOneHarmlessLineThatEnds) {
    EXPECT_EQ("one two %E2%80%AE", withReason("Unknown", "", "one\n\ttwo\xC2\x9B \xE2\x80\xAE").reason);
    const auto longest = withReason("Unknown", "", std::string(100'000, 'a') + "end").reason;
    EXPECT_EQ(300U + 2U, longest.size());
    EXPECT_TRUE(longest.ends_with("end"));
}

TEST(ProblemTest, WantOfMemoryNamesTheOption) {
    const Location subject(StorageIRI(u"java:///x"));
    const std::string line =
        "jstore: OutOfMemory: java:///x: no memory is left in Java; --jvm-option -Xmx1g gives it more";
    EXPECT_EQ(line, errorLine(describe(std::bad_alloc(), subject)));
    for (const auto* const text : {"java.lang.OutOfMemoryError: Java heap space", "java.lang.OutOfMemoryError",
                                   "java.lang.OutOfMemoryError: GC overhead limit exceeded",
                                   "java.lang.RuntimeException: java.lang.OutOfMemoryError: Java heap space"}) {
        EXPECT_EQ(line, errorLine(describe(std::runtime_error(text), subject)));
    }
    EXPECT_EQ(ExitCode::Failed, describe(std::bad_alloc(), subject).exitCode);
}

TEST(ProblemTest, WantOfOtherMemoryIsInJavasWords) {
    const Location subject(StorageIRI(u"java:///x"));
    const std::runtime_error error("java.lang.OutOfMemoryError: unable to create native thread");
    EXPECT_EQ("jstore: OutOfMemory: java:///x: no memory is left in Java: unable to create native thread",
              errorLine(describe(error, subject)));
}

class DescribeTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string lineFor(ErrorCode code, std::u16string location) const {
        return errorLine(describe(Exception(code, StorageIRI(std::move(location))), m_subject));
    }

    Location m_subject{StorageIRI(u"java:///a b/\u00FC")};
};

TEST_F(DescribeTest, LocationIsSpelledAsTheUserDid) {
    EXPECT_EQ("jstore: NotFound: java:///a b/\xC3\xBC", lineFor(ErrorCode::NotFound, u"java:///a%20b/%C3%BC"));
}

TEST_F(DescribeTest, OtherLocationIsNamed) {
    EXPECT_EQ("jstore: AlreadyExists: java:///c%20d", lineFor(ErrorCode::AlreadyExists, u"java:///c%20d"));
}

TEST_F(DescribeTest, ErrorWithoutLocationConcernsTheSubject) {
    EXPECT_EQ("jstore: InUse: java:///a b/\xC3\xBC", lineFor(ErrorCode::InUse, u""));
}

TEST_F(DescribeTest, OtherExceptionsAreInternal) {
    const auto problem = describe(std::runtime_error("broken\nin two"), m_subject);
    EXPECT_EQ("jstore: Internal: java:///a b/\xC3\xBC: broken in two", errorLine(problem));
    EXPECT_EQ(ExitCode::Failed, problem.exitCode);
}

TEST_F(DescribeTest, ExitCodeFollowsTheErrorCode) {
    EXPECT_EQ(ExitCode::Denied, describe(Exception(ErrorCode::AccessDenied, StorageIRI()), m_subject).exitCode);
}

}  // namespace

}  // namespace jstore
