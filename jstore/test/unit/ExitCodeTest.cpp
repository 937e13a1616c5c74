#include "base/ExitCode.h"

#include <gmock/gmock.h>

namespace jstore {

using foundation::storage::provider::ErrorCode;
using ::testing::HasSubstr;

namespace {

TEST(ExitCodeTest, NumbersAreTheDocumentedOnes) {
    EXPECT_EQ(static_cast<int>(ExitCode::Done), 0);
    EXPECT_EQ(static_cast<int>(ExitCode::Failed), 1);
    EXPECT_EQ(static_cast<int>(ExitCode::Usage), 2);
    EXPECT_EQ(static_cast<int>(ExitCode::NotFound), 3);
    EXPECT_EQ(static_cast<int>(ExitCode::AlreadyExists), 4);
    EXPECT_EQ(static_cast<int>(ExitCode::Denied), 5);
    EXPECT_EQ(static_cast<int>(ExitCode::SomeFailed), 6);
    EXPECT_EQ(static_cast<int>(ExitCode::NoJava), 7);
    EXPECT_EQ(static_cast<int>(ExitCode::NotSupported), 8);
    EXPECT_EQ(static_cast<int>(ExitCode::HungUp), 129);
    EXPECT_EQ(static_cast<int>(ExitCode::Interrupted), 130);
    EXPECT_EQ(static_cast<int>(ExitCode::Terminated), 143);
}

TEST(ExitCodeTest, ErrorCodesHaveTheirExitCodes) {
    EXPECT_EQ(exitCodeOf(ErrorCode::NotFound), ExitCode::NotFound);
    EXPECT_EQ(exitCodeOf(ErrorCode::AlreadyExists), ExitCode::AlreadyExists);
    EXPECT_EQ(exitCodeOf(ErrorCode::AccessDenied), ExitCode::Denied);
    EXPECT_EQ(exitCodeOf(ErrorCode::NotSupported), ExitCode::NotSupported);
    for (const auto code : {ErrorCode::Unknown, ErrorCode::NotAFile, ErrorCode::NotAFolder, ErrorCode::FolderNotEmpty,
                            ErrorCode::Cancelled, ErrorCode::InvalidLocation, ErrorCode::StorageFull, ErrorCode::InUse,
                            ErrorCode::Unavailable}) {
        EXPECT_EQ(exitCodeOf(code), ExitCode::Failed) << toString(code);
    }
}

TEST(ExitCodeTest, NoOperationIsDone) { EXPECT_EQ(combine({}), ExitCode::Done); }

TEST(ExitCodeTest, OperationsThatEndAlikeShareTheirCode) {
    EXPECT_EQ(combine({ExitCode::Done, ExitCode::Done}), ExitCode::Done);
    EXPECT_EQ(combine({ExitCode::NotFound, ExitCode::NotFound}), ExitCode::NotFound);
    EXPECT_EQ(combine({ExitCode::Denied}), ExitCode::Denied);
}

TEST(ExitCodeTest, OperationsThatEndDifferentlyAreSomeFailed) {
    EXPECT_EQ(combine({ExitCode::Done, ExitCode::NotFound}), ExitCode::SomeFailed);
    EXPECT_EQ(combine({ExitCode::NotFound, ExitCode::Done}), ExitCode::SomeFailed);
    EXPECT_EQ(combine({ExitCode::NotFound, ExitCode::Denied}), ExitCode::SomeFailed);
}

TEST(ExitCodeTest, TableListsEveryNumber) {
    const auto table = exitCodeTable();
    for (const auto* const number :
         {"  0  ", "  1  ", "  2  ", "  3  ", "  4  ", "  5  ", "  6  ", "  7  ", "  8  ", "129  ", "130  ", "143  "}) {
        EXPECT_THAT(table, HasSubstr(number));
    }
}

}  // namespace

}  // namespace jstore
