// What the end of a provider does to its Java object and its references.
#include <gmock/gmock.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "JavaProvider.h"
#include "bridge/RecordHook.h"
#include "provider/ProviderTest.h"
#include "support/JavaHelpers.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {
namespace {

using foundation::log::AllSeverities;
using foundation::log::Severity;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* DestructorSignature = "virtual storage::javaprovider::JavaProvider::~JavaProvider()";

class DestructionTest : public ProviderTest {
protected:
    /// The recorded global references of a provider, as they were made.
    [[nodiscard]] std::vector<JniCall> makeRecorded() {
        backEnd = newBackEnd();
        provider = std::make_unique<JavaProvider>(handle, backEnd);
        return recorder.records({.only = "NewGlobalRef"});
    }

    jobject backEnd = nullptr;
    std::unique_ptr<IProvider> provider;
};

TEST_F(DestructionTest, DisposesOnceAndReleasesFourReferences) {
    provider = makeProvider();
    recorder.clear();
    provider.reset();
    EXPECT_THAT(recorder.calls(),
                ElementsAre("PushLocalFrame", "CallVoidMethod dispose()V", "DeleteGlobalRef", "DeleteGlobalRef",
                            "DeleteGlobalRef", "DeleteGlobalRef", "PopLocalFrame"));
    EXPECT_THAT(javaCalls(), ElementsAre("dispose"));
}

TEST_F(DestructionTest, ReleasesTheObjectFirstThenTheClassesInOrder) {
    const auto made = makeRecorded();
    ASSERT_EQ(made.size(), 5U);
    provider.reset();
    const auto released = recorder.records({.only = "DeleteGlobalRef"});
    ASSERT_EQ(released.size(), 4U);
    EXPECT_EQ(recorder.record("CallVoidMethod dispose").targetReference, made[0].resultReference);
    for (std::size_t i = 0; i < released.size(); ++i) {
        EXPECT_EQ(released[i].targetReference, made[i].resultReference) << "release " << i;
    }
}

TEST_F(DestructionTest, KeepsTheReferenceToExtendedFeature) {
    const auto made = makeRecorded();
    provider.reset();
    EXPECT_EQ(recorder.liveGlobals(), 1);
    // The reference is still valid, so the test may use it.
    auto* kept = static_cast<jclass>(const_cast<void*>(made.at(4).result));
    const JniRecorder::Unrecorded unrecorded;
    jclass feature = findClass(env(), "com/corvallen/storage/provider/ExtendedFeature");
    EXPECT_EQ(env()->IsSameObject(kept, feature), JNI_TRUE);
}

TEST_F(DestructionTest, LetsTheHandleGo) {
    provider = makeProvider();
    EXPECT_EQ(handle.use_count(), 2);
    provider.reset();
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(DestructionTest, LooksForTheMachineOnce) {
    provider = makeProvider();
    const auto before = handle->lookups();
    provider.reset();
    EXPECT_EQ(handle->lookups(), before + 2) << "whether it is there, and what it is";
}

TEST_F(DestructionTest, IsTracedAndLogged) {
    provider = makeProvider();
    LogCapture log(AllSeverities);
    provider.reset();
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Enter, DestructorSignature, 0},
                                           LogRecord{Severity::Progress, "Disposing of Java Provider", 1},
                                           LogRecord{Severity::Exit, DestructorSignature, 0}));
}

TEST_F(DestructionTest, DisposalIsNotLoggedWhileTheSeverityIsOff) {
    provider = makeProvider();
    LogCapture log(AllSeverities & ~static_cast<std::uint32_t>(Severity::Progress));
    provider.reset();
    EXPECT_THAT(log.texts(Severity::Progress), IsEmpty());
    EXPECT_THAT(javaCalls(), ElementsAre("dispose"));
}

TEST_F(DestructionTest, EachProviderDisposesOfItsOwn) {
    provider = makeProvider();
    auto other = makeProvider();
    other.reset();
    EXPECT_THAT(javaCalls(), ElementsAre("dispose"));
    provider.reset();
    EXPECT_THAT(javaCalls(), ElementsAre("dispose", "dispose"));
}

TEST_F(DestructionTest, LetsTheHandleGoBeforeTheEventCallback) {
    // Seen from the callback's end: what the callback owns may be the last to need the machine.
    long sharesAtTheEnd = -1;
    {
        const auto probe = std::shared_ptr<void>(nullptr, [&](void*) { sharesAtTheEnd = handle.use_count(); });
        provider = makeProvider();
        provider->startChangeNotification(StorageIRI(u"java://test/a"), [probe](auto&&...) {});
    }
    provider.reset();
    EXPECT_EQ(sharesAtTheEnd, 1) << "the test's own";
}

// ---- dispose() throws ----

TEST_F(DestructionTest, ExceptionOfDisposeBecomesNoErrorOfTheProvider) {
    provider = makeProvider();
    script::failNext(env(), "dispose", "runtime", "cannot let go");
    LogCapture log(static_cast<std::uint32_t>(Severity::Caught));
    recorder.clear();
    EXPECT_NO_THROW(provider.reset());
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(recorder.count("ExceptionCheck") + recorder.count("ExceptionOccurred"), 0U) << "nobody asks";
    EXPECT_EQ(recorder.count("DeleteGlobalRef"), 4U);
    EXPECT_EQ(takePendingException(env()), "java.lang.IllegalStateException: cannot let go")
        << "it stays pending on a thread that stays attached";
}

TEST_F(DestructionTest, ExceptionOfDisposePrintsNothingWhenTheThreadIsDetached) {
    provider = makeProvider();
    script::failNext(env(), "dispose", "runtime", "cannot let go");
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    onFreshThread([&] { provider.reset(); });
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(javaCalls(), ElementsAre("dispose"));
    EXPECT_EQ(recorder.countOnAllThreads("DeleteGlobalRef"), 4U);
    EXPECT_EQ(handle->attachments(), handle->detachments());
}

// ---- the machine is gone ----

TEST_F(DestructionTest, RemovedMachineIsLoggedAndNothingIsCalled) {
    provider = makeProvider();
    recorder.clear();
    handle->remove();
    LogCapture log(AllSeverities);
    EXPECT_NO_THROW(provider.reset());
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Enter, DestructorSignature, 0},
                                           LogRecord{Severity::Exit, std::string(DestructorSignature) + " [throw]", 0},
                                           LogRecord{Severity::Caught, "Exception caught: JVM remvoed", 0}));
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    EXPECT_THAT(javaCalls(), IsEmpty());
    EXPECT_EQ(handle.use_count(), 1) << "the handle is let go all the same";
}

TEST_F(DestructionTest, MachineThatVanishesBetweenTwoLooksIsNoReasonToThrow) {
    // The second look is given as it comes: the wrapper of a null machine says what it has to say.
    provider = makeProvider();
    handle->removeAfter(1);
    LogCapture log(static_cast<std::uint32_t>(Severity::Caught));
    EXPECT_NO_THROW(provider.reset());
    EXPECT_EQ(log.texts().size(), 1U);
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(DestructionTest, WhateverTheHandleThrowsIsLogged) {
    struct ThrowingHandle final : jvm_interface::JVM {
        std::shared_ptr<jvm_interface::JVM> real;
        bool throws = false;
        JavaVM* getJavaVM() override { return throws ? throw 42 : real->getJavaVM(); }
    };
    const auto throwing = std::make_shared<ThrowingHandle>();
    throwing->real = jvm();
    provider = std::make_unique<JavaProvider>(throwing, newBackEnd());
    throwing->throws = true;
    const LogCapture log(static_cast<std::uint32_t>(Severity::Caught));
    provider.reset();
    EXPECT_THAT(log.texts(), ElementsAre("Exception caught: unknown exception"));
    EXPECT_EQ(throwing.use_count(), 1);
}

TEST_F(DestructionTest, LogThatFailsHarmsNobody) {
    provider = std::make_unique<JavaProvider>(handle, newBackEnd());
    handle->remove();
    const LogCapture log(static_cast<std::uint32_t>(Severity::Caught));
    const RecordHook failing([](const boost::log::record_view&) { throw std::runtime_error("disk full"); });
    EXPECT_NO_THROW(provider.reset());
}

TEST_F(DestructionTest, LogThatFailsDoesNotCostTheDisposal) {
    provider = makeProvider();
    const LogCapture log;
    const RecordHook failing([](const boost::log::record_view&) { throw std::runtime_error("disk full"); });
    provider.reset();
    EXPECT_THAT(javaCalls(), ElementsAre("dispose"));
}

TEST_F(DestructionTest, WholeLifeOpensNoRecordWhileTheMaskIsZero) {
    const LogCapture log(0);
    std::size_t records = 0;
    const RecordHook hook([&](const boost::log::record_view&) { ++records; });
    provider = std::make_unique<JavaProvider>(handle, newBackEnd());
    provider->createFile(StorageIRI(u"java:///a"));
    static_cast<void>(provider->hasFeature(foundation::storage::provider::ExtendedFeature::RecursiveFolderRemoval));
    provider.reset();
    EXPECT_EQ(records, 0U);
}

TEST_F(DestructionTest, RefusedAttachmentIsLogged) {
    provider = makeProvider();
    handle->refuseAttachments(true);
    LogCapture log(static_cast<std::uint32_t>(Severity::Caught));
    onFreshThread([&] { EXPECT_NO_THROW(provider.reset()); });
    ASSERT_EQ(log.texts().size(), 1U);
    EXPECT_TRUE(log.texts().front().starts_with("Exception caught: ")) << log.texts().front();
    EXPECT_THAT(javaCalls(), IsEmpty());
}

// ---- a provider without a Java object ----

class NullObjectTest : public ProviderTest {};

TEST_F(NullObjectTest, ConstructionMakesNoCallAndSucceeds) {
    const JavaProvider provider(handle, nullptr);
    EXPECT_THAT(recorder.calls({.localFrames = false}), IsEmpty());
    EXPECT_EQ(recorder.liveGlobals(), 0);
}

TEST_F(NullObjectTest, ObjectWithoutAClassCountsAsNone) {
    jobject backEnd = newBackEnd();
    recorder.fail({.call = "GetObjectClass", .failure = JniFailure::silent()});
    const JavaProvider provider(handle, backEnd);
    EXPECT_THAT(recorder.calls({.localFrames = false}), ElementsAre("GetObjectClass"));
}

TEST_F(NullObjectTest, DestructionCallsNothing) {
    auto provider = std::make_unique<JavaProvider>(handle, nullptr);
    LogCapture log(AllSeverities);
    provider.reset();
    EXPECT_THAT(recorder.calls({.localFrames = false}), IsEmpty());
    EXPECT_THAT(log.texts(Severity::Caught), IsEmpty());
    EXPECT_EQ(handle.use_count(), 1);
}

}  // namespace
}  // namespace storage::javaprovider::test
