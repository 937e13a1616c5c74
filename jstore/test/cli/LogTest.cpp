#include "support/Matchers.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

class LogTest : public ::testing::Test {
protected:
    [[nodiscard]] Outcome touch(const std::string& level) const {
        return jstore({"--log", level, "touch", m_folder.location("x")});
    }

    TemporaryFolder m_folder;
};

TEST_F(LogTest, OffIsSilent) { EXPECT_THAT(touch("off"), IsSilentlyDone()); }

TEST_F(LogTest, FailuresAreSilentWhenNothingFails) { EXPECT_THAT(touch("failures"), IsSilentlyDone()); }

TEST_F(LogTest, ProgressTellsSteps) {
    const auto outcome = touch("progress");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.errLines(), Each(StartsWith("jstore log: ")));
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("Disposing of Java Provider"), Not(HasSubstr("> "))));
}

TEST_F(LogTest, TraceIsIndented) {
    const auto outcome = touch("trace");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.err,
                AllOf(HasSubstr("jstore log: > "), HasSubstr("jstore log: < "), HasSubstr("createStorageUri")));
    EXPECT_THAT(outcome.err, ::testing::ContainsRegex("jstore log: [ ><!]   +"));
    EXPECT_THAT(outcome.errLines(), Each(StartsWith("jstore log: ")));
}

}  // namespace

}  // namespace jstore::test
