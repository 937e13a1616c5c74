#include "base/ExitCode.h"

#include <gmock/gmock.h>

namespace jstore {

using foundation::storage::provider::ErrorCode;
using ::testing::HasSubstr;

namespace {

TEST(ExitCodeTest, NumbersAreTheDocumentedOnes) {
    EXPECT_EQ(0, static_cast<int>(ExitCode::Done));
    EXPECT_EQ(1, static_cast<int>(ExitCode::Failed));
    EXPECT_EQ(2, static_cast<int>(ExitCode::Usage));
    EXPECT_EQ(3, static_cast<int>(ExitCode::NotFound));
    EXPECT_EQ(4, static_cast<int>(ExitCode::AlreadyExists));
    EXPECT_EQ(5, static_cast<int>(ExitCode::Denied));
    EXPECT_EQ(6, static_cast<int>(ExitCode::SomeFailed));
    EXPECT_EQ(7, static_cast<int>(ExitCode::NoJava));
    EXPECT_EQ(8, static_cast<int>(ExitCode::NotSupported));
    EXPECT_EQ(129, static_cast<int>(ExitCode::HungUp));
    EXPECT_EQ(130, static_cast<int>(ExitCode::Interrupted));
    EXPECT_EQ(143, static_cast<int>(ExitCode::Terminated));
}

TEST(ExitCodeTest, ErrorCodesHaveTheirExitCodes) {
    EXPECT_EQ(ExitCode::NotFound, exitCodeOf(ErrorCode::NotFound));
    EXPECT_EQ(ExitCode::AlreadyExists, exitCodeOf(ErrorCode::AlreadyExists));
    EXPECT_EQ(ExitCode::Denied, exitCodeOf(ErrorCode::AccessDenied));
    EXPECT_EQ(ExitCode::NotSupported, exitCodeOf(ErrorCode::NotSupported));
    for (const auto code : {ErrorCode::Unknown, ErrorCode::NotAFile, ErrorCode::NotAFolder, ErrorCode::FolderNotEmpty,
                            ErrorCode::Cancelled, ErrorCode::InvalidLocation, ErrorCode::StorageFull, ErrorCode::InUse,
                            ErrorCode::Unavailable}) {
        EXPECT_EQ(ExitCode::Failed, exitCodeOf(code)) << toString(code);
    }
}

TEST(ExitCodeTest, NoOperationIsDone) { EXPECT_EQ(ExitCode::Done, combine({})); }

TEST(ExitCodeTest, OperationsThatEndAlikeShareTheirCode) {
    EXPECT_EQ(ExitCode::Done, combine({ExitCode::Done, ExitCode::Done}));
    EXPECT_EQ(ExitCode::NotFound, combine({ExitCode::NotFound, ExitCode::NotFound}));
    EXPECT_EQ(ExitCode::Denied, combine({ExitCode::Denied}));
}

TEST(ExitCodeTest, OperationsThatEndDifferentlyAreSomeFailed) {
    EXPECT_EQ(ExitCode::SomeFailed, combine({ExitCode::Done, ExitCode::NotFound}));
    EXPECT_EQ(ExitCode::SomeFailed, combine({ExitCode::NotFound, ExitCode::Done}));
    EXPECT_EQ(ExitCode::SomeFailed, combine({ExitCode::NotFound, ExitCode::Denied}));
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
