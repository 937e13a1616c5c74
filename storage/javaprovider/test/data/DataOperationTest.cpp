// What the operations that fetch something from Java have in common.
#include <gmock/gmock.h>

#include <boost/date_time/posix_time/posix_time.hpp>

#include <array>
#include <atomic>
#include <latch>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "data/DataTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

/// One operation, as it is called in the framework and arrives in Java.
struct DataOperation {
    const char* name;
    const char* javaMethod;
    const char* jniCall;
    bool traced;
    void (*run)(const IProvider&, const StorageIRI&);

    [[nodiscard]] std::string pattern() const { return std::string(jniCall) + " " + javaMethod; }
    /// Whether Java gives an object, which must be released.
    [[nodiscard]] bool givesObject() const { return std::string_view(jniCall) == "CallObjectMethod"; }

    friend void PrintTo(const DataOperation& operation, std::ostream* out) { *out << operation.name; }
};

constexpr std::array<DataOperation, 10> DataOperations = {{
    {"getFileAttributes", "getFileAttributes", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getFileAttributes(a)); }},
    {"getFolderAttributes", "getFolderAttributes", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getFolderAttributes(a)); }},
    {"setLastModified", "setLastModified", "CallVoidMethod", true,
     [](auto& p, auto& a) { p.setLastModified(a, boost::posix_time::ptime()); }},
    {"getExtendedAttributes", "getExtendedAttributes", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getExtendedAttributes(a)); }},
    {"getProviderStorageInfo", "getProviderStorageInfo", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.getProviderStorageInfo(a)); }},
    {"listAll", "listFolder", "CallObjectMethod", true, [](auto& p, auto& a) { static_cast<void>(p.listAll(a)); }},
    {"listFiles", "listFolder", "CallObjectMethod", true, [](auto& p, auto& a) { static_cast<void>(p.listFiles(a)); }},
    {"listFolders", "listFolder", "CallObjectMethod", true,
     [](auto& p, auto& a) { static_cast<void>(p.listFolders(a)); }},
    {"openByteStream", "getChannel", "CallObjectMethod", false,
     [](auto& p, auto& a) { static_cast<void>(p.openByteStream(a)); }},
    {"openReadOnlyByteStream", "getReadOnlyChannel", "CallObjectMethod", false,
     [](auto& p, auto& a) { static_cast<void>(p.openReadOnlyByteStream(a)); }},
}};

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

    void expectUriReleasedLast() const {
        const auto made = recorder.record("NewObject com/corvallen/storage/provider/StorageURI").resultReference;
        const auto released = recorder.records({.only = "DeleteLocalRef"});
        ASSERT_FALSE(released.empty());
        EXPECT_EQ(released.back().targetReference, made);
        EXPECT_EQ(recorder.liveLocals(), 0);
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
    expectUriReleasedLast();
    if (!GetParam().givesObject()) {
        return;
    }
    const auto released = recorder.records({.only = "DeleteLocalRef"});
    ASSERT_GE(released.size(), 2U);
    EXPECT_EQ(released[released.size() - 2].targetReference, recorder.record(GetParam().pattern()).resultReference);
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

TEST_P(DataOperationTest, ProviderExceptionBecomesTheFrameworksError) {
    failWith("ACCESS_DENIED", "java://test/elsewhere");
    const auto error = thrownBy<ProviderError>([&] { run(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::AccessDenied);
    EXPECT_EQ(error->location(), StorageIRI(u"java://test/elsewhere"));
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    expectUriReleasedLast();
}

TEST_P(DataOperationTest, AnyOtherExceptionIsAnInternalError) {
    failWith("runtime", "a bug");
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: a bug");
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    expectUriReleasedLast();
}

TEST_P(DataOperationTest, NothingIsAskedOfAnObjectThatDidNotCome) {
    failWith("NOT_FOUND", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); }));
    EXPECT_EQ(recorder.count("GetArrayLength") + recorder.count("CallLongMethod") + recorder.count("NewGlobalRef") +
                  recorder.count("CallBooleanMethod"),
              0U);
}

TEST_P(DataOperationTest, WorksAgainAfterAFailure) {
    failWith("UNAVAILABLE", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); }));
    EXPECT_NO_THROW(run());
}

TEST_P(DataOperationTest, MemoryThatRunsOutInTheCallIsAnInternalError) {
    recorder.fail({.call = GetParam().pattern(), .failure = JniFailure::outOfMemory()});
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.lang.OutOfMemoryError. The message was: made to fail by a "
              "test");
    expectUriReleasedLast();
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

// ---- the location ----

TEST_P(DataOperationTest, LocationThatCannotBeMadeEndsTheOperation) {
    for (const char* step : {"NewString", "NewObject"}) {
        recorder.clear();
        recorder.fail({.call = step, .failure = JniFailure::outOfMemory()});
        EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { run(); })) << step;
        EXPECT_EQ(recorder.count(GetParam().pattern()), 0U) << step;
        EXPECT_EQ(recorder.liveLocals(), 0) << step;
    }
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_P(DataOperationTest, LocationThatIsNullWithoutReasonIsJavasAffair) {
    recorder.fail({.call = "NewObject", .failure = JniFailure::silent()});
    failWith("nullPointer", "no location");
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.lang.NullPointerException. The message was: no location");
    EXPECT_EQ(recorder.record(GetParam().pattern()).objectArgument(0), nullptr);
    EXPECT_EQ(recorder.liveLocals(), 0);
}

// ---- no machine ----

TEST_P(DataOperationTest, RemovedMachineIsReportedBeforeAnythingElse) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { run(); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    EXPECT_THAT(javaCalls(), IsEmpty());
    handle->restore();
    EXPECT_NO_THROW(run());
}

TEST_P(DataOperationTest, RefusedAttachmentIsAnInternalError) {
    handle->refuseAttachments(true);
    onFreshThread([&] { EXPECT_TRUE(throwsExactly<InternalError>([&] { run(); })); });
    EXPECT_THAT(javaCalls(), IsEmpty());
    handle->refuseAttachments(false);
}

INSTANTIATE_TEST_SUITE_P(Operations, DataOperationTest, ::testing::ValuesIn(DataOperations),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace storage::javaprovider::test
