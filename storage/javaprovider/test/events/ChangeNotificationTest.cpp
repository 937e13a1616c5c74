// Starting for a location, for the folder that holds it, and stopping; and what arrives of an event.
#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "JavaProvider.h"
#include "data/Traces.h"
#include "events/EventTest.h"
#include "fl/i18n/text.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Pair;

class ChangeNotificationTest : public EventTest {};

// ---- starting ----

TEST_F(ChangeNotificationTest, FurtherArgumentsDoNotMatter) {
    const int context = 0;
    provider->startChangeNotification(location, log.callback(), &context, 1);
    provider->startChangeNotification(location, log.callback(), nullptr, 99);
    EXPECT_THAT(javaCalls(), ElementsAre("publishEventsFor java://test/a", "publishEventsFor java://test/a"));
}

TEST_F(ChangeNotificationTest, StartingTwiceAsksJavaTwice) {
    start(log.callback());
    start(log.callback());
    EXPECT_EQ(javaCalls().size(), 2U);
    publish();
    EXPECT_EQ(log.size(), 1U);
}

// ---- on the parent ----

/// Notes the requests that reach its slot instead of passing them on.
class SpyingProvider final : public JavaProvider {
public:
    using JavaProvider::JavaProvider;

    mutable std::vector<std::string> locations;
    mutable const void* context = nullptr;
    mutable std::int32_t onParent = -1;
    mutable bool callbackIsCallers = false;
    const ChangeCallback* expected = nullptr;

protected:
    void doStartChangeNotification(const StorageIRI& location, const ChangeCallback& callback, const void* itsContext,
                                   std::int32_t itsOnParent) const override {
        locations.push_back(fl::i18n::to_string(location.text()));
        context = itsContext;
        onParent = itsOnParent;
        callbackIsCallers = &callback == expected;
    }
};

class OnParentTest : public EventTest {};

TEST_F(OnParentTest, AsksForTheFolderThatHoldsTheLocation) {
    provider->startChangeNotificationOnParent(StorageIRI(u"java://mount/one/two/three"), log.callback());
    EXPECT_THAT(javaCalls(), ElementsAre("publishEventsFor java://mount/one/two"));
    publish();
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(OnParentTest, AsksForARootItself) {
    provider->startChangeNotificationOnParent(StorageIRI(u"java://mount/"), log.callback());
    EXPECT_THAT(javaCalls(), ElementsAre("publishEventsFor java://mount/"));
}

TEST_F(OnParentTest, GoesThroughTheStartOfWhateverTheProviderIs) {
    jobject backEnd = newBackEnd();
    SpyingProvider spy(handle, backEnd);
    const IProvider& asProvider = spy;
    const ChangeCallback callback = log.callback();
    const int context = 0;
    spy.expected = &callback;
    recorder.clear();
    asProvider.startChangeNotificationOnParent(StorageIRI(u"java://mount/one/two/three"), callback, &context);
    EXPECT_THAT(spy.locations, ElementsAre("java://mount/one/two"));
    EXPECT_EQ(spy.onParent, 1);
    EXPECT_EQ(spy.context, &context) << "passed through";
    EXPECT_TRUE(spy.callbackIsCallers) << "passed through, not copied";
    EXPECT_THAT(recorder.calls(), IsEmpty()) << "nothing is done beside";
}

TEST_F(OnParentTest, FailuresArrive) {
    mayLeave(fixture::MakingOfUri);
    script::failNext(env(), "publishEventsFor", "ACCESS_DENIED", "java://mount");
    EXPECT_TRUE(throwsExactly<ProviderError>(
        [&] { provider->startChangeNotificationOnParent(StorageIRI(u"java://mount/one"), log.callback()); }));
}

// ---- stopping ----

class StopTest : public EventTest {
protected:
    void stop() const { provider->stopChangeNotification(location); }
};

TEST_F(StopTest, MakesExactlyTheseCallsEachTime) {
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        stop();
        EXPECT_THAT(recorder.calls(),
                    ElementsAreArray(
                        joined({{"PushLocalFrame"},
                                makingOfUri("java://test/a"),
                                {"CallVoidMethod stopPublishingEventsFor(Lcom/corvallen/storage/provider/StorageURI;)V",
                                 "ExceptionCheck", "DeleteLocalRef", "PopLocalFrame"}})));
        EXPECT_EQ(recorder.record("CallVoidMethod").referenceArgument(0), recorder.record("NewObject").resultReference);
    }
    EXPECT_THAT(javaCalls(),
                ElementsAre("stopPublishingEventsFor java://test/a", "stopPublishingEventsFor java://test/a"));
}

TEST_F(StopTest, EventThatComesAfterwardsStillArrives) {
    start(log.callback());
    stop();
    publish();
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(StopTest, LeavesPublisherCallbackAndLatchAlone) {
    EventLog second;
    start(log.callback());
    stop();
    recorder.clear();
    start(second.callback());
    EXPECT_EQ(recorder.count("RegisterNatives"), 0U);
    EXPECT_THAT(publishers(), ElementsAre("0", "0"));
    publish();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(second.size(), 0U);
}

TEST_F(StopTest, ProviderExceptionBecomesTheFrameworksErrorAndTheLocationGoesWithTheFrame) {
    mayLeave(fixture::MakingOfUri);
    script::failNext(env(), "stopPublishingEventsFor", "NOT_FOUND", "java://test/a");
    recorder.clear();
    const auto error = thrownBy<ProviderError>([&] { stop(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::NotFound);
    const auto uri = recorder.record("NewObject com/corvallen/storage/provider/StorageURI").resultReference;
    for (const JniCall& released : recorder.records({.only = "DeleteLocalRef"})) {
        EXPECT_NE(released.targetReference, uri);
    }
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(StopTest, AnyOtherExceptionIsAnInternalError) {
    mayLeave(fixture::MakingOfUri);
    script::failNext(env(), "stopPublishingEventsFor", "runtime", "a bug");
    EXPECT_EQ(internalErrorOf([&] { stop(); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: a bug");
}

TEST_F(StopTest, LocationThatIsNullWithoutReasonIsLeftToJava) {
    recorder.fail({.call = "NewObject", .failure = JniFailure::silent()});
    EXPECT_NO_THROW(stop());
    EXPECT_THAT(javaCalls(), ElementsAre("stopPublishingEventsFor null"));
    EXPECT_EQ(recorder.count("DeleteLocalRef"), 1U) << "only the text's";
    recorder.clear();
    recorder.fail({.call = "NewObject", .failure = JniFailure::silent()});
    EXPECT_NO_THROW(start(log.callback()));
    EXPECT_EQ(recorder.record("CallVoidMethod publishEventsFor").objectArgument(0), nullptr);
}

TEST_F(StopTest, RemovedMachineIsReported) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { stop(); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    handle->restore();
}

// ---- events through the publisher ----

class PublishedEventTest : public EventTest {
protected:
    void SetUp() override {
        EventTest::SetUp();
        start(log.callback());
        recorder.clear();
    }
};

TEST_F(PublishedEventTest, ArrivesWithAllItCarries) {
    tell("publish", {"ChildAdded", "java://test/watched", "java://test/changed", "Folder", "host/1"});
    const Event event = log.only();
    EXPECT_EQ(event.kind, Kind::ChildAdded);
    EXPECT_EQ(event.watched, StorageIRI(u"java://test/watched"));
    EXPECT_EQ(event.changed, StorageIRI(u"java://test/changed"));
    EXPECT_EQ(event.type, EntryType::Folder);
    EXPECT_THAT(event.entries(), ElementsAre(Pair("originId", "host/1")));
}

TEST_F(PublishedEventTest, EveryWordOfJavaIsUnderstood) {
    const std::vector<std::pair<std::string, Kind>> kinds = {{"ChildAdded", Kind::ChildAdded},
                                                             {"ChildModified", Kind::ChildModified},
                                                             {"ChildRemoved", Kind::ChildRemoved},
                                                             {"SelfModified", Kind::SelfModified},
                                                             {"SelfRemoved", Kind::SelfRemoved}};
    for (const auto& [word, kind] : kinds) {
        publish(word, "File");
        EXPECT_EQ(log.events().back().kind, kind) << word;
        EXPECT_EQ(log.events().back().type, EntryType::File);
        publish(word, "Folder");
        EXPECT_EQ(log.events().back().type, EntryType::Folder);
    }
    EXPECT_EQ(log.size(), 10U);
}

TEST_F(PublishedEventTest, CallbackRunsOnTheThreadThatPublishes) {
    std::atomic<std::thread::id> ran;
    std::unique_ptr<IProvider> other = makePublishing();
    other->startChangeNotification(location, [&](auto&&...) { ran = std::this_thread::get_id(); });
    publish();
    EXPECT_EQ(ran.load(), std::this_thread::get_id());
    tell("publishOnNewThread", {"SelfModified", "java://w", "java://c", "File", "x"});
    EXPECT_NE(ran.load(), std::this_thread::get_id());
}

TEST_F(PublishedEventTest, CallbackMayUseTheProvider) {
    std::unique_ptr<IProvider> other = makePublishing();
    bool exists = false;
    other->startChangeNotification(location, [&](auto&&...) {
        exists = other->fileExists(location);
        other->stopChangeNotification(location);
    });
    script::answer(env(), "fileExists", true);
    publish();
    EXPECT_TRUE(exists);
    tell("publishOnNewThread", {"SelfModified", "java://w", "java://c", "File", "x"});
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(PublishedEventTest, DisposedPublisherDropsItsEvents) {
    provider.reset();
    EXPECT_NO_THROW(publish());
    EXPECT_EQ(log.size(), 0U);
}

TEST_F(StopTest, NothingButTheMakingOfLocationsIsTraced) {
    const auto places = traced([&] {
        start(log.callback());
        provider->startChangeNotificationOnParent(location, log.callback());
        provider->stopChangeNotification(location);
    });
    ASSERT_EQ(places.size(), 6U);
    for (const auto& place : places) {
        EXPECT_THAT(place.text, ::testing::HasSubstr("createStorageUri("));
    }
}

}  // namespace
}  // namespace storage::javaprovider::test
