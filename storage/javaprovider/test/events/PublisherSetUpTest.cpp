// The one-time making of the publisher: its steps, and who gets its events.
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "JavaProvider.h"
#include "JavaProviderEvents.h"
#include "events/EventTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::SizeIs;

const std::vector<std::string> SetUpCalls = {
    "RegisterNatives com/corvallen/storage/provider/NativePublisher "
    "nativePublish(JLjava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)V",
    "GetMethodID com/corvallen/storage/provider/NativePublisher <init>(J)V",
    "NewObject com/corvallen/storage/provider/NativePublisher <init>(J)V", "NewWeakGlobalRef"};

constexpr const char* Request =
    "CallVoidMethod publishEventsFor(Lcom/corvallen/storage/provider/StorageURI;"
    "Lcom/corvallen/storage/provider/EventPublisher;)V";

/// Notes the last JNI call before each time it is copied.
class CopyWitness {
public:
    CopyWitness(const JniRecorder& recorder, std::vector<std::string>& copies)
        : m_recorder(&recorder), m_copies(&copies) {}
    CopyWitness(const CopyWitness& other) : m_recorder(other.m_recorder), m_copies(other.m_copies) {
        const auto calls = m_recorder->calls();
        m_copies->push_back(calls.empty() ? "" : calls.back());
    }
    CopyWitness& operator=(const CopyWitness&) = delete;
    ~CopyWitness() = default;

    template <class... Arguments>
    void operator()(const Arguments&...) const {}

private:
    const JniRecorder* m_recorder;
    std::vector<std::string>* m_copies;
};

class PublisherSetUpTest : public EventTest {};

// ---- the calls ----

TEST_F(PublisherSetUpTest, FirstRequestMakesExactlyTheseCalls) {
    start(log.callback());
    EXPECT_THAT(recorder.calls(),
                ElementsAreArray(joined({{"PushLocalFrame"},
                                         makingOfUri("java://test/a"),
                                         SetUpCalls,
                                         {Request, "ExceptionCheck", "DeleteLocalRef", "PopLocalFrame"}})));
}

TEST_F(PublisherSetUpTest, LaterRequestsMakeExactlyTheseCalls) {
    start(log.callback());
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        start(log.callback());
        EXPECT_THAT(recorder.calls(),
                    ElementsAreArray(joined({{"PushLocalFrame"},
                                             makingOfUri("java://test/a"),
                                             {"NewLocalRef", Request, "ExceptionCheck", "DeleteLocalRef",
                                              "DeleteLocalRef", "PopLocalFrame"}})));
    }
}

TEST_F(PublisherSetUpTest, PublisherAndLocationGoToJava) {
    start(log.callback());
    const auto request = recorder.record("CallVoidMethod publishEventsFor");
    EXPECT_EQ(request.referenceArgument(0),
              recorder.record("NewObject com/corvallen/storage/provider/StorageURI").resultReference);
    EXPECT_EQ(request.referenceArgument(1),
              recorder.record("NewObject com/corvallen/storage/provider/NativePublisher").resultReference);
    EXPECT_EQ(recorder.record("NewWeakGlobalRef").targetReference, request.referenceArgument(1));
    EXPECT_THAT(javaCalls(), ElementsAre("publishEventsFor java://test/a"));
    EXPECT_THAT(publishers(), ElementsAre("0"));
}

TEST_F(PublisherSetUpTest, LaterRequestsPassAReferenceOfTheirOwnAndReleaseIt) {
    start(log.callback());
    const auto weak = recorder.record("NewWeakGlobalRef").resultReference;
    // A record's numbers are forgotten with the references, so this counts from the weak one on.
    const auto before = recorder.records().size();
    start(log.callback());
    const auto calls = recorder.records();
    const std::vector<JniCall> later(calls.begin() + static_cast<std::ptrdiff_t>(before), calls.end());
    ReferenceNumber fresh = 0;
    std::vector<ReferenceNumber> released;
    for (const JniCall& call : later) {
        if (call.name() == "NewLocalRef") {
            EXPECT_EQ(call.targetReference, weak);
            fresh = call.resultReference;
        } else if (call.matches("CallVoidMethod publishEventsFor")) {
            EXPECT_EQ(call.referenceArgument(1), fresh);
        } else if (call.name() == "DeleteLocalRef") {
            released.push_back(call.targetReference);
        }
    }
    EXPECT_NE(fresh, 0U);
    ASSERT_EQ(released.size(), 3U);
    EXPECT_EQ(released[1], fresh) << "after the text, before the location";
}

TEST_F(PublisherSetUpTest, PublisherOfTheFirstRequestIsLeftToTheFrame) {
    start(log.callback());
    const auto publisher = recorder.record("NewObject com/corvallen/storage/provider/NativePublisher").resultReference;
    for (const JniCall& released : recorder.records({.only = "DeleteLocalRef"})) {
        EXPECT_NE(released.targetReference, publisher);
    }
}

TEST_F(PublisherSetUpTest, CallbackIsCopiedOnceAfterTheRegistration) {
    std::vector<std::string> copies;
    const ChangeCallback callback = CopyWitness(recorder, copies);
    copies.clear();
    start(callback);
    EXPECT_THAT(copies, ElementsAre(SetUpCalls.front()));
    start(callback);
    EXPECT_THAT(copies, SizeIs(1)) << "later callbacks are not kept";
}

TEST_F(PublisherSetUpTest, HandleLeadsToTheCallback) {
    start(log.callback());
    const jlong callback = recorder.record("NewObject com/corvallen/storage/provider/NativePublisher").longArgument(0);
    ASSERT_NE(callback, 0);
    nativePublishImpl(env(), nullptr, callback, javaString(env(), u"SelfRemoved"), javaString(env(), u"java://w"),
                      javaString(env(), u"java://c"), javaString(env(), u"Folder"), nullptr);
    EXPECT_EQ(log.only().kind, Kind::SelfRemoved);
}

TEST_F(PublisherSetUpTest, NoGlobalReferenceIsMade) {
    start(log.callback());
    start(log.callback());
    EXPECT_EQ(recorder.count("NewGlobalRef"), 0U);
    EXPECT_EQ(recorder.liveGlobals(), 0);
    EXPECT_EQ(recorder.liveWeaks(), 1);
}

TEST_F(PublisherSetUpTest, WeakReferenceGoesWithTheProviderAfterTheFourOthers) {
    start(log.callback());
    const auto weak = recorder.record("NewWeakGlobalRef").resultReference;
    provider.reset();
    EXPECT_EQ(recorder.liveWeaks(), 0);
    EXPECT_EQ(recorder.record("DeleteWeakGlobalRef").targetReference, weak);
    const auto calls = recorder.calls();
    ASSERT_GE(calls.size(), 7U);
    EXPECT_THAT(std::vector<std::string>(calls.end() - 7, calls.end()),
                ElementsAre("CallVoidMethod dispose()V", "DeleteGlobalRef", "DeleteGlobalRef", "DeleteGlobalRef",
                            "DeleteGlobalRef", "DeleteWeakGlobalRef", "PopLocalFrame"));
}

TEST_F(PublisherSetUpTest, ProviderThatWasNeverAskedToWatchRegistersNothing) {
    provider->stopChangeNotification(location);
    provider.reset();
    EXPECT_EQ(
        recorder.count("RegisterNatives") + recorder.count("NewWeakGlobalRef") + recorder.count("DeleteWeakGlobalRef"),
        0U);
}

// ---- whose events ----

TEST_F(PublisherSetUpTest, FirstCallbackGetsTheEventsOfAllRequests) {
    EventLog second;
    start(log.callback());
    provider->startChangeNotification(StorageIRI(u"java://test/b"), second.callback());
    EXPECT_THAT(javaCalls(), ElementsAre("publishEventsFor java://test/a", "publishEventsFor java://test/b"));
    EXPECT_THAT(publishers(), ElementsAre("0", "0")) << "one publisher serves all locations";
    publish();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(second.size(), 0U);
}

TEST_F(PublisherSetUpTest, CallersCallbackMayGoAtOnce) {
    {
        const ChangeCallback callback = log.callback();
        start(callback);
    }
    publish();
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(PublisherSetUpTest, CopyLivesAsLongAsTheProvider) {
    auto token = std::make_shared<int>(0);
    start([token](auto&&...) {});
    EXPECT_EQ(token.use_count(), 2);
    provider.reset();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PublisherSetUpTest, EachProviderHasItsOwn) {
    EventLog second;
    const auto other = makePublishing();
    recorder.clear();
    start(log.callback());
    other->startChangeNotification(location, second.callback());
    EXPECT_EQ(recorder.count("RegisterNatives"), 2U);
    EXPECT_THAT(publishers(), ElementsAre("0", "1"));
    publish();
    EXPECT_EQ(log.size(), 0U);
    EXPECT_EQ(second.size(), 1U);
}

TEST_F(PublisherSetUpTest, EmptyCallbackIsTakenAsItIs) {
    EXPECT_NO_THROW(start(ChangeCallback()));
    EXPECT_THAT(publishers(), ElementsAre("0"));
}

// ---- at the same time ----

TEST_F(PublisherSetUpTest, SixtyFourThreadsAtATimeSetItUpOnce) {
    constexpr int Threads = 64;
    EXPECT_EQ(failuresOfStartsAtOnce(Threads), 0);
    EXPECT_EQ(recorder.countOnAllThreads("RegisterNatives"), 1U);
    EXPECT_EQ(recorder.countOnAllThreads("NewObject com/corvallen/storage/provider/NativePublisher"), 1U);
    EXPECT_EQ(recorder.countOnAllThreads("NewLocalRef"), Threads - 1U);
    EXPECT_THAT(publishers(), AllOf(SizeIs(Threads), Each("0")));
    EXPECT_EQ(recorder.liveWeaks(), 1);
    EXPECT_EQ(handle->attachments(), handle->detachments());
    publish();
    EXPECT_EQ(log.size(), 1U);
}

}  // namespace
}  // namespace storage::javaprovider::test
