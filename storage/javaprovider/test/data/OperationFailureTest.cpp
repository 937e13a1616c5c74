// What all forwarded operations do when Java throws, memory runs out or the machine is gone.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "data/DataOperations.h"
#include "data/DataTest.h"
#include "provider/Operations.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::IsEmpty;

constexpr const char* MakingOfUri = "NewObject com/corvallen/storage/provider/StorageURI";

/// One operation of either table.
struct ForwardedOperation {
    std::string name;
    std::string javaMethod;
    std::string call;  ///< as the recorder matches it
    std::size_t locations = 1;
    std::function<void(const IProvider&)> run;

    friend void PrintTo(const ForwardedOperation& operation, std::ostream* out) { *out << operation.name; }
};

std::vector<ForwardedOperation> forwardedOperations() {
    std::vector<ForwardedOperation> all;
    for (const Operation& one : Operations) {
        all.push_back({one.method, one.method, one.line(), one.isMove ? 2U : 1U,
                       [&one](const IProvider& provider) { one.on(provider); }});
    }
    for (const DataOperation& one : DataOperations) {
        all.push_back({one.name, one.javaMethod, one.pattern(), 1,
                       [&one](const IProvider& provider) { one.run(provider, StorageIRI(u"java://test/a")); }});
    }
    return all;
}

class OperationFailureTest : public DataTest, public ::testing::WithParamInterface<ForwardedOperation> {
protected:
    void SetUp() override {
        DataTest::SetUp();
        callStaticVoid(env(), fixture::MemoryChannel, "reset");
        callStaticVoid(env(), fixture::MemoryChannel, "open", {"content"});
    }

    void run() const { GetParam().run(*provider); }
    void failWith(const std::string& kind, const std::string& text) const {
        script::failNext(env(), GetParam().javaMethod, kind, text);
    }

    /// No exception is pending, and the last references that were released are the locations, the last made first.
    void expectEndedCleanly() const {
        EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
        EXPECT_EQ(recorder.liveLocals(), 0);
        const auto made = resultsOf(MakingOfUri);
        const auto gone = released();
        ASSERT_EQ(made.size(), GetParam().locations);
        ASSERT_GE(gone.size(), made.size());
        EXPECT_TRUE(std::equal(made.begin(), made.end(), gone.rbegin()));
    }
};

// ---- Java throws ----

TEST_P(OperationFailureTest, ProviderExceptionBecomesTheFrameworksError) {
    failWith("ACCESS_DENIED", "java://test/elsewhere");
    const auto error = thrownBy<ProviderError>([&] { run(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::AccessDenied);
    EXPECT_EQ(error->location(), StorageIRI(u"java://test/elsewhere"));
    expectEndedCleanly();
}

TEST_P(OperationFailureTest, AnyOtherExceptionIsAnInternalError) {
    failWith("runtime", "a bug in the back end");
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: a bug in the "
              "back end");
    expectEndedCleanly();
}

TEST_P(OperationFailureTest, WorksAgainAfterAFailure) {
    for (const char* code : {"UNAVAILABLE", "UNKNOWN"}) {
        failWith(code, "java://test/a");
        EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); })) << code;
        EXPECT_NO_THROW(run()) << code;
    }
}

// ---- memory runs out ----

TEST_P(OperationFailureTest, MemoryThatRunsOutInTheCallIsAnInternalError) {
    recorder.fail({.call = GetParam().call, .failure = JniFailure::outOfMemory()});
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.lang.OutOfMemoryError. The message was: made to fail by a "
              "test");
    expectEndedCleanly();
}

TEST_P(OperationFailureTest, EachLocationThatCannotBeMadeEndsTheOperation) {
    for (std::size_t n = 1; n <= GetParam().locations; ++n) {
        for (const char* step : {"NewString", "NewObject"}) {
            recorder.clear();
            recorder.fail({.call = step, .occurrence = n, .failure = JniFailure::outOfMemory()});
            EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { run(); })) << step << " " << n;
            EXPECT_EQ(recorder.count(GetParam().call), 0U) << step << " " << n;
            EXPECT_EQ(recorder.liveLocals(), 0) << step << " " << n;
        }
    }
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_P(OperationFailureTest, LocationThatIsNullWithoutReasonIsLeftToJava) {
    for (std::size_t n = 1; n <= GetParam().locations; ++n) {
        recorder.clear();
        recorder.fail({.call = "NewObject", .occurrence = n, .failure = JniFailure::silent()});
        failWith("nullPointer", "no location");
        EXPECT_EQ(internalErrorOf([&] { run(); }),
                  "ProviderCallback threw an unexpected java.lang.NullPointerException. The message was: no location");
        EXPECT_EQ(recorder.record(GetParam().call).objectArgument(n - 1), nullptr);
        EXPECT_EQ(recorder.liveLocals(), 0);
    }
}

// ---- no machine ----

TEST_P(OperationFailureTest, RemovedMachineIsReportedBeforeAnythingElse) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { run(); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    EXPECT_THAT(javaCalls(), IsEmpty());
    handle->restore();
    EXPECT_NO_THROW(run());
}

TEST_P(OperationFailureTest, RefusedAttachmentIsAnInternalError) {
    handle->refuseAttachments(true);
    onFreshThread([&] { EXPECT_TRUE(throwsExactly<InternalError>([&] { run(); })); });
    EXPECT_THAT(javaCalls(), IsEmpty());
    handle->refuseAttachments(false);
}

INSTANTIATE_TEST_SUITE_P(Operations, OperationFailureTest, ::testing::ValuesIn(forwardedOperations()),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace storage::javaprovider::test
