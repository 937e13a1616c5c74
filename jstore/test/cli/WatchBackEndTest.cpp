#include <gtest/gtest.h>

#include "support/Json.h"
#include "support/Matchers.h"

namespace jstore::test {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// A back end that publishes events of its own making.
class WatchBackEndTest : public ::testing::Test {
protected:
    static Outcome watch(const std::string& provider, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--class-path", JSTORE_TEST_BACKENDS, "--provider",
                                             "com.corvallen.jstore.test." + provider, "watch", "--for", "0s"});
        return jstore(std::move(arguments));
    }
};

TEST_F(WatchBackEndTest, BackEndWithoutEventsIsEight) {
    EXPECT_THAT(watch("EmptyProvider", {"java:///x"}),
                FailsWith(8, "jstore: NotSupported: java:///x: the back end does not report changes"));
}

TEST_F(WatchBackEndTest, BackEndWithoutRecursiveEventsIsEight) {
    EXPECT_THAT(watch("EventProvider", {"-r", "java:///x"}),
                FailsWith(8, AllOf(StartsWith("jstore: NotSupported: java:///x: "), HasSubstr("leave out -r"))));
}

TEST_F(WatchBackEndTest, WhatIsDeeperThanAskedForIsLeftOut) {
    const auto outcome = watch("EventProvider", {"--json", "java:///deep"});
    const auto objects = objectsOf(outcome);
    ASSERT_EQ(objects.size(), 2U) << outcome.err;
    EXPECT_EQ(objects[1]["location"], "java:///deep/child");
    EXPECT_EQ(objects[1]["originId"], "someone");
}

TEST_F(WatchBackEndTest, WhatNobodyAskedForIsLeftOut) {
    const auto outcome = watch("EventProvider", {"java:///elsewhere"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
}

TEST_F(WatchBackEndTest, EventsThatComeTooFastAreCounted) {
    const auto outcome = watch("EventProvider", {"java:///storm"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.outLines().size(), 65'536U);
    EXPECT_THAT(outcome.errLines(),
                ElementsAre(HasSubstr("watching"), "jstore: 4464 events were lost because they came too fast"));
}

TEST_F(WatchBackEndTest, BackEndThatDoesNotStopIsTold) {
    const auto outcome = watch("EventProvider", {"java:///for-ever"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("jstore: InUse: java:///for-ever"));
}

}  // namespace

}  // namespace jstore::test
