// What the operations that fetch something from Java have in common; OperationFailureTest has what they share with all.
#include <gmock/gmock.h>

#include <atomic>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "data/DataOperations.h"
#include "data/DataTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class DataOperationTest : public DataTest, public ::testing::WithParamInterface<DataOperation> {
protected:
    void SetUp() override {
        DataTest::SetUp();
        callStaticVoid(env(), fixture::MemoryChannel, "reset");
        callStaticVoid(env(), fixture::MemoryChannel, "open", {"content"});
    }

    void run() const { GetParam().run(*provider, location); }
    void failWith(const std::string& kind, const std::string& text) const {
        script::failNext(env(), GetParam().javaMethod, kind, text);
    }
};

// ---- success ----

TEST_P(DataOperationTest, CallsTheJavaMethodOnceWithTheLocationAndChecksAtOnce) {
    run();
    const auto calls = recorder.calls();
    const auto begin = joined({{"PushLocalFrame"}, makingOfUri("java://test/a")});
    ASSERT_GT(calls.size(), begin.size() + 2);
    EXPECT_THAT(std::vector<std::string>(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(begin.size())),
                ElementsAreArray(begin));
    EXPECT_TRUE(calls[begin.size()].starts_with(GetParam().pattern() + "(")) << calls[begin.size()];
    EXPECT_EQ(calls[begin.size() + 1], "ExceptionCheck");
    EXPECT_EQ(recorder.count(GetParam().pattern()), 1U);
    EXPECT_EQ(recorder.record(GetParam().pattern()).referenceArgument(0),
              recorder.record("NewObject com/corvallen/storage/provider/StorageURI").resultReference);
}

TEST_P(DataOperationTest, ReleasesJavasObjectAndThenTheLocation) {
    run();
    std::vector<ReferenceNumber> expected = resultsOf("NewObject com/corvallen/storage/provider/StorageURI");
    if (GetParam().givesObject()) {
        expected.insert(expected.begin(), recorder.record(GetParam().pattern()).resultReference);
    }
    const auto gone = released();
    ASSERT_GE(gone.size(), expected.size());
    EXPECT_THAT(std::vector<ReferenceNumber>(gone.end() - static_cast<std::ptrdiff_t>(expected.size()), gone.end()),
                ElementsAreArray(expected));
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_P(DataOperationTest, HoldsNoShareOfTheMachineBeyondTheCall) {
    run();
    EXPECT_EQ(handle.use_count(), 2) << "the provider's share and the test's";
}

TEST_P(DataOperationTest, ThousandCallsLeaveNothingBehind) {
    recorder.keepCalls(false);
    for (int i = 0; i < 1000; ++i) {
        run();
    }
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(recorder.liveGlobals(), 0);
    EXPECT_THAT(recorder.leaks(), IsEmpty());
}

TEST_P(DataOperationTest, WorksOnAThreadThatJavaDoesNotKnow) {
    onFreshThread([&] {
        EXPECT_NO_THROW(run());
        EXPECT_FALSE(isAttached(vm()));
    });
    EXPECT_EQ(handle->attachments(), handle->detachments());
}

TEST_P(DataOperationTest, ManyThreadsMayCallAtATime) {
    constexpr int Threads = 8;
    recorder.keepCalls(false);
    std::atomic<int> done = 0;
    std::latch start(Threads);
    std::vector<std::jthread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (int n = 0; n < 50; ++n) {
                run();
                ++done;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(done, Threads * 50);
    EXPECT_THAT(recorder.leaks(), IsEmpty());
}

// ---- Java throws ----

TEST_P(DataOperationTest, NothingIsAskedOfAnObjectThatDidNotCome) {
    failWith("NOT_FOUND", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); }));
    EXPECT_EQ(recorder.count("GetArrayLength") + recorder.count("CallLongMethod") + recorder.count("NewGlobalRef") +
                  recorder.count("CallBooleanMethod"),
              0U);
}

TEST_P(DataOperationTest, FailureIsTracedAsAThrowWhereTheOperationIsTraced) {
    failWith("NOT_FOUND", "java://test/a");
    const auto places = traced([&] { run(); });
    ASSERT_FALSE(places.empty());
    const bool isOperation =
        places.back().text.find("createStorageUri(") == std::string::npos && places.back().text.ends_with(" [throw]");
    EXPECT_EQ(isOperation, GetParam().traced);
}

TEST_P(DataOperationTest, RemovedMachineIsTracedAsAThrowWhereTheOperationIsTraced) {
    handle->remove();
    const auto places = traced([&] { run(); });
    handle->restore();
    ASSERT_EQ(places.size(), GetParam().traced ? 2U : 0U);
    if (GetParam().traced) {
        EXPECT_EQ(places[1].text, places[0].text + " [throw]");
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, DataOperationTest, ::testing::ValuesIn(DataOperations),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace storage::javaprovider::test
