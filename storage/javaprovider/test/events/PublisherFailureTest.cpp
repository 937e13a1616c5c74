// A publisher that cannot be made, and the next request that tries again.
#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "events/EventTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* Registration = "RegisterNatives com/corvallen/storage/provider/NativePublisher";
constexpr const char* Lookup = "GetMethodID com/corvallen/storage/provider/NativePublisher";
constexpr const char* Construction = "NewObject com/corvallen/storage/provider/NativePublisher";

class PublisherFailureTest : public EventTest {
protected:
    void SetUp() override {
        EventTest::SetUp();
        mayLeave(fixture::MakingOfUri);
    }

    void failOnce(const std::string& call, const JniFailure& failure) {
        recorder.fail({.call = call, .failure = failure});
    }
    void startAndFail() {
        EXPECT_THROW(start(log.callback()), std::exception);
        EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    }
    /// The location's reference is not deleted by the request that failed, but with its frame.
    void expectUriLeftToTheFrame() const {
        const auto uri = recorder.record("NewObject com/corvallen/storage/provider/StorageURI").resultReference;
        for (const JniCall& released : recorder.records({.only = "DeleteLocalRef"})) {
            EXPECT_NE(released.targetReference, uri);
        }
        EXPECT_EQ(recorder.calls({.exceptionChecks = false}).back(), "PopLocalFrame");
        EXPECT_EQ(recorder.liveLocals(), 0);
    }
    /// A request now sets everything up and its callback gets the events.
    void expectWorksNow() {
        EventLog later;
        recorder.clear();
        start(later.callback());
        EXPECT_EQ(recorder.count(Registration), 1U);
        publish();
        EXPECT_EQ(later.size(), 1U);
        EXPECT_EQ(log.size(), 0U);
        provider.reset();
    }
};

// ---- the registration ----

TEST_F(PublisherFailureTest, RefusedRegistrationIsAPlainError) {
    failOnce("RegisterNatives", JniFailure::silent());
    EXPECT_EQ(textThrownBy<std::runtime_error>([&] { start(log.callback()); }), "Problem registering native method");
    EXPECT_EQ(recorder.count(Lookup) + recorder.count(Construction) + recorder.count("CallVoidMethod"), 0U);
    EXPECT_THAT(javaCalls(), IsEmpty());
    expectUriLeftToTheFrame();
}

TEST_F(PublisherFailureTest, RefusedRegistrationLeavesNoExceptionPending) {
    failOnce("RegisterNatives", JniFailure::exception("java/lang/NoSuchMethodError"));
    EXPECT_EQ(textThrownBy<std::runtime_error>([&] { start(log.callback()); }), "Problem registering native method");
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_F(PublisherFailureTest, RefusedRegistrationKeepsNoCallback) {
    failOnce("RegisterNatives", JniFailure::silent());
    const auto token = std::make_shared<int>(0);
    EXPECT_THROW(start([token](auto&&...) {}), std::runtime_error);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PublisherFailureTest, NextRequestRegistersAgain) {
    failOnce("RegisterNatives", JniFailure::silent());
    startAndFail();
    expectWorksNow();
}

TEST_F(PublisherFailureTest, RegistrationMayBeRefusedManyTimes) {
    for (int i = 0; i < 10; ++i) {
        failOnce("RegisterNatives", JniFailure::outOfMemory());
        startAndFail();
    }
    expectWorksNow();
}

TEST_F(PublisherFailureTest, OneOfManyThreadsFailsAndTheOthersGoOn) {
    constexpr int Threads = 16;
    recorder.fail({.call = "RegisterNatives", .failure = JniFailure::silent(), .anyThread = true});
    EXPECT_EQ(failuresOfStartsAtOnce(Threads), 1) << "one ran the set-up and failed; another woke and tried again";
    EXPECT_EQ(recorder.countOnAllThreads("RegisterNatives"), 2U);
    EXPECT_EQ(publishers().size(), Threads - 1U);
    EXPECT_THAT(publishers(), Each("0"));
}

// ---- the constructor ----

TEST_F(PublisherFailureTest, MissingConstructorIsReportedByItsName) {
    failOnce(Lookup, JniFailure::exception("java/lang/NoSuchMethodError"));
    EXPECT_EQ(internalErrorOf([&] { start(log.callback()); }),
              "Method NativePublisher constructor not found.\njava.lang.NoSuchMethodError: made to fail by a test");
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_THAT(javaCalls(), IsEmpty());
    expectUriLeftToTheFrame();
}

TEST_F(PublisherFailureTest, CallbackOfAFailedRequestIsKeptAndReplacedByTheNext) {
    failOnce(Lookup, JniFailure::exception("java/lang/NoSuchMethodError"));
    const auto token = std::make_shared<int>(0);
    EXPECT_TRUE(throwsExactly<InternalError>([&] { start([token](auto&&...) {}); }));
    EXPECT_EQ(token.use_count(), 2);
    start(log.callback());
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PublisherFailureTest, CallbackOfAFailedRequestGoesWithTheProvider) {
    failOnce(Lookup, JniFailure::exception("java/lang/NoSuchMethodError"));
    const auto token = std::make_shared<int>(0);
    EXPECT_TRUE(throwsExactly<InternalError>([&] { start([token](auto&&...) {}); }));
    provider.reset();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PublisherFailureTest, NextRequestLooksTheConstructorUpAgain) {
    failOnce(Lookup, JniFailure::exception("java/lang/NoSuchMethodError"));
    startAndFail();
    expectWorksNow();
}

TEST_F(PublisherFailureTest, ConstructorThatIsMissingWithoutReasonGivesJavaNoPublisher) {
    failOnce(Lookup, JniFailure::silent());
    EXPECT_NO_THROW(start(log.callback()));
    EXPECT_EQ(recorder.record("CallVoidMethod publishEventsFor").objectArgument(1), nullptr);
    EXPECT_EQ(recorder.count(Construction), 0U);
    EXPECT_THAT(publishers(), ElementsAre("null"));
}

// ---- the construction ----

TEST_F(PublisherFailureTest, ConstructorThatThrowsIsReportedAfterTheRequest) {
    failOnce(Construction, JniFailure::exception("java/lang/IllegalStateException"));
    EXPECT_EQ(internalErrorOf([&] { start(log.callback()); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: made to fail by "
              "a test");
    const auto request = recorder.record("CallVoidMethod publishEventsFor");
    EXPECT_EQ(request.objectArgument(1), nullptr);
    EXPECT_TRUE(request.pendingBefore) << "the set-up itself does not look";
    EXPECT_EQ(recorder.count("NewWeakGlobalRef"), 0U);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    expectUriLeftToTheFrame();
}

TEST_F(PublisherFailureTest, NextRequestAfterAThrowingConstructorGetsAFreshPublisher) {
    failOnce(Construction, JniFailure::exception("java/lang/IllegalStateException"));
    startAndFail();
    recorder.clear();
    EventLog second;
    start(second.callback());
    EXPECT_EQ(recorder.count(Registration), 0U) << "that much was done";
    EXPECT_EQ(recorder.count(Construction), 1U);
    EXPECT_NE(recorder.record("CallVoidMethod publishEventsFor").objectArgument(1), nullptr);
    publish();
    EXPECT_EQ(log.size(), 1U) << "the first callback is the one that was kept";
    EXPECT_EQ(second.size(), 0U);
    EXPECT_EQ(recorder.liveWeaks(), 1);
}

TEST_F(PublisherFailureTest, FreshPublisherThatCannotBeMadeIsReportedToo) {
    failOnce(Construction, JniFailure::outOfMemory());
    startAndFail();
    failOnce(Construction, JniFailure::outOfMemory());
    EXPECT_EQ(internalErrorOf([&] { start(log.callback()); }),
              "ProviderCallback threw an unexpected java.lang.OutOfMemoryError. The message was: made to fail by a "
              "test");
    failOnce(Lookup, JniFailure::exception("java/lang/NoSuchMethodError"));
    EXPECT_EQ(internalErrorOf([&] { start(log.callback()); }),
              "Method NativePublisher constructor not found.\njava.lang.NoSuchMethodError: made to fail by a test");
    EXPECT_NO_THROW(start(log.callback())) << "no lock is left behind";
    publish();
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(PublisherFailureTest, MemoryThatLacksForFindingThePublisherAgainDoesNotFailTheRequest) {
    recorder.clear();
    failOnce("NewWeakGlobalRef", JniFailure::outOfMemory());
    EXPECT_NO_THROW(start(log.callback()));
    EXPECT_FALSE(recorder.record("CallVoidMethod publishEventsFor").pendingBefore);
    EXPECT_NO_THROW(start(log.callback()));
    EXPECT_THAT(publishers(), ElementsAre("0", "1"));
}

TEST_F(PublisherFailureTest, LivingPublisherThatIsNotFoundIsReplacedForTheSameCallback) {
    start(log.callback());
    failOnce("NewLocalRef", JniFailure::silent());
    EventLog second;
    start(second.callback());
    EXPECT_THAT(publishers(), ElementsAre("0", "1"));
    EXPECT_EQ(recorder.liveWeaks(), 1);
    publish();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(second.size(), 0U);
}

TEST_F(PublisherFailureTest, PublisherThatCannotBeFoundAgainIsMadeAnewForTheSameCallback) {
    failOnce("NewWeakGlobalRef", JniFailure::silent());
    start(log.callback());
    EventLog second;
    start(second.callback());
    EXPECT_THAT(publishers(), ElementsAre("0", "1"));
    publish();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(second.size(), 0U);
}

// ---- Java refuses the request ----

TEST_F(PublisherFailureTest, RefusedFirstRequestKeepsItsCallback) {
    script::failNext(env(), "publishEventsFor", "NOT_SUPPORTED", "java://test/a");
    recorder.clear();
    const auto error = thrownBy<ProviderError>([&] { start(log.callback()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), foundation::storage::provider::ErrorCode::NotSupported);
    expectUriLeftToTheFrame();
    EventLog second;
    start(second.callback());
    EXPECT_EQ(recorder.count(Registration), 1U) << "the set-up was done";
    publish();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(second.size(), 0U);
}

TEST_F(PublisherFailureTest, AnyOtherExceptionOfARequestIsAnInternalError) {
    script::failNext(env(), "publishEventsFor", "runtime", "a bug");
    recorder.clear();
    EXPECT_EQ(internalErrorOf([&] { start(log.callback()); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: a bug");
    expectUriLeftToTheFrame();
}

TEST_F(PublisherFailureTest, LocationThatCannotBeMadeEndsTheRequestBeforeTheSetUp) {
    for (const char* step : {"NewString", "NewObject"}) {
        recorder.clear();
        failOnce(step, JniFailure::outOfMemory());
        EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { start(log.callback()); }));
        EXPECT_EQ(recorder.count("RegisterNatives"), 0U);
        EXPECT_EQ(recorder.liveLocals(), 0);
    }
    expectWorksNow();
}

TEST_F(PublisherFailureTest, RemovedMachineIsReportedBeforeAnythingElse) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { start(log.callback()); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    handle->restore();
    expectWorksNow();
}

}  // namespace
}  // namespace storage::javaprovider::test
