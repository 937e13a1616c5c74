// What the nine operations on files and folders have in common. What they share with all operations when something
// fails stands in OperationFailureTest.
#include <gmock/gmock.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "data/CallLines.h"
#include "data/References.h"
#include "provider/Operations.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class FileOperationTest : public ProviderTest, public ::testing::WithParamInterface<Operation> {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        provider = makeProvider();
        recorder.clear();
    }

    void run() const { GetParam().on(*provider); }
    void failWith(const std::string& kind, const std::string& text) const {
        script::failNext(env(), GetParam().method, kind, text);
    }
    /// How many locations the operation takes.
    [[nodiscard]] static std::size_t locations() { return GetParam().isMove ? 2 : 1; }

    /// The references that the operation's own StorageURI objects were.
    [[nodiscard]] std::vector<ReferenceNumber> uris() const { return resultsOf(recorder, "NewObject"); }

    /// The last references that were released are the URIs, the one made last first.
    void expectUrisReleasedLastInReverse() const {
        const auto made = uris();
        ASSERT_EQ(made.size(), locations());
        const auto released = releasedLocals(recorder);
        ASSERT_GE(released.size(), made.size());
        for (std::size_t i = 0; i < made.size(); ++i) {
            EXPECT_EQ(released[released.size() - 1 - i], made[i]) << "location " << i;
        }
        EXPECT_EQ(recorder.liveLocals(), 0);
    }

    std::unique_ptr<IProvider> provider;
};

std::vector<std::string> wholeOperation(const Operation& operation) {
    using Lines = std::vector<std::string>;
    const bool isMove = operation.isMove;
    return joined({{"PushLocalFrame"},
                   makingOfUri("java://test/a"),
                   isMove ? makingOfUri("java://test/b") : Lines(),
                   {operation.line(), "ExceptionCheck", "DeleteLocalRef"},
                   isMove ? Lines{"DeleteLocalRef"} : Lines(),
                   {"PopLocalFrame"}});
}

// ---- success ----

TEST_P(FileOperationTest, MakesExactlyTheseCallsEachTime) {
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        run();
        EXPECT_THAT(recorder.calls(), ElementsAreArray(wholeOperation(GetParam())));
    }
}

TEST_P(FileOperationTest, CallsTheJavaMethodOnceWithItsLocations) {
    run();
    EXPECT_THAT(javaCalls(), ElementsAre(GetParam().javaLine()));
}

TEST_P(FileOperationTest, HandsTheUrisOverInOrder) {
    run();
    const auto called = recorder.record(GetParam().jniCall);
    const auto made = uris();
    ASSERT_EQ(made.size(), locations());
    for (std::size_t i = 0; i < made.size(); ++i) {
        EXPECT_EQ(called.referenceArgument(i), made[i]);
    }
    EXPECT_EQ(called.arguments.size(), GetParam().isMove ? 3U : 1U);
}

TEST_P(FileOperationTest, ReleasesTheUrisInReverseOrder) {
    run();
    expectUrisReleasedLastInReverse();
}

TEST_P(FileOperationTest, LooksForTheMachineOnce) {
    const auto before = handle->lookups();
    run();
    EXPECT_EQ(handle->lookups(), before + 2) << "whether it is there, and what it is";
    EXPECT_EQ(handle.use_count(), 2) << "the provider's share and the test's";
}

TEST_P(FileOperationTest, MakesNoGlobalReference) {
    run();
    EXPECT_EQ(recorder.count("NewGlobalRef") + recorder.count("NewWeakGlobalRef"), 0U);
    EXPECT_EQ(recorder.liveGlobals(), 0);
}

// ---- Java throws ----

TEST_P(FileOperationTest, SubclassOfProviderExceptionCountsAsOne) {
    failWith("own:IN_USE", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { run(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::InUse);
}

TEST_P(FileOperationTest, CheckedExceptionAndErrorAreInternalErrorsToo) {
    failWith("checked", "disk");
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.io.IOException. The message was: disk");
    failWith("error", "assertion");
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.lang.AssertionError. The message was: assertion");
}

TEST_P(FileOperationTest, UrisAreReleasedWhenAProviderExceptionIsThrown) {
    failWith("NOT_FOUND", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); }));
    expectUrisReleasedLastInReverse();
}

TEST_P(FileOperationTest, UrisAreReleasedWhenAnotherExceptionIsThrown) {
    failWith("runtime", "a bug");
    EXPECT_TRUE(throwsExactly<InternalError>([&] { run(); }));
    expectUrisReleasedLastInReverse();
}

TEST_P(FileOperationTest, ExceptionIsClearedBeforeTheUrisGo) {
    failWith("NOT_FOUND", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); }));
    std::size_t afterClear = 0;
    bool cleared = false;
    for (const JniCall& call : recorder.records({.localFrames = false})) {
        afterClear += cleared ? 1 : 0;
        cleared = cleared || call.name() == "ExceptionClear";
        EXPECT_FALSE(cleared && call.pendingAfter) << call.toString();
    }
    EXPECT_EQ(afterClear, 1 + locations()) << "the exception's own reference, and the locations";
}

TEST_P(FileOperationTest, HundredFailuresLeaveNothingBehind) {
    script::failAlways(env(), GetParam().method, "UNAVAILABLE", "java://test/a");
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); }));
    }
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(recorder.liveGlobals(), 0);
    EXPECT_EQ(recorder.liveChars(), 0);
}

// ---- the call itself fails ----

TEST_P(FileOperationTest, EveryCallThatRunsOutOfMemoryEndsCleanly) {
    run();
    const std::size_t calls = recorder.fallibleCalls();
    for (std::size_t n = 1; n <= calls; ++n) {
        recorder.clear();
        recorder.fail({.occurrence = n, .failure = JniFailure::outOfMemory()});
        EXPECT_THROW(run(), std::exception) << "call " << n;
        EXPECT_EQ(recorder.faultsLeft(), 0U) << "call " << n;
        EXPECT_EQ(recorder.liveLocals(), 0) << "call " << n;
        EXPECT_EQ(takePendingException(env()), "") << "call " << n;
    }
}

TEST_P(FileOperationTest, EveryCallThatFailsWithoutReasonEndsCleanly) {
    run();
    const std::size_t calls = recorder.fallibleCalls();
    for (std::size_t n = 1; n <= calls; ++n) {
        recorder.clear();
        recorder.fail({.occurrence = n, .failure = JniFailure::silent()});
        try {
            run();
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(n, 1U) << "only the local frame is indispensable";
        }
        EXPECT_EQ(recorder.faultsLeft(), 0U) << "call " << n;
        EXPECT_EQ(recorder.liveLocals(), 0) << "call " << n;
        EXPECT_EQ(takePendingException(env()), "") << "call " << n;
    }
}

// ---- no machine ----

TEST_P(FileOperationTest, MachineThatGoesAwayDuringTheOperationIsNotAskedForAgain) {
    handle->removeAfter(2);
    EXPECT_NO_THROW(run());
    EXPECT_EQ(internalErrorOf([&] { run(); }), "JVM remvoed");
    handle->restore();
}

INSTANTIATE_TEST_SUITE_P(Operations, FileOperationTest, ::testing::ValuesIn(Operations),
                         [](const auto& tested) { return std::string(tested.param.method); });

}  // namespace
}  // namespace storage::javaprovider::test
