// One publisher for all requests of a provider, whatever thread they come from, as long as it lives.
#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "events/EventTest.h"
#include "storage/jvm/ThreadAttachment.h"
#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

/// What Java's NativeCallback runs, and how often it did. Atomic, since ThreadSanitizer does not see how Java orders
/// it.
std::atomic<const std::function<void()>*> nativeAction;
std::atomic<int> nativeActionsRun;

void JNICALL runNativeAction(JNIEnv* /*env*/, jclass /*self*/) {
    (*nativeAction.load())();
    ++nativeActionsRun;
}

class PublisherLifeTest : public EventTest {
protected:
    /// Has Java call the action back, inside a native method, on this thread or on one that Java starts.
    void insideNativeMethod(const std::function<void()>& action, bool onNewThread) const {
        {
            const JniRecorder::Unrecorded unrecorded;
            const JNINativeMethod method = {const_cast<char*>("callBack"), const_cast<char*>("()V"),
                                            reinterpret_cast<void*>(&runNativeAction)};
            ASSERT_EQ(env()->RegisterNatives(findClass(env(), fixture::NativeCallback), &method, 1), JNI_OK);
        }
        nativeAction = &action;
        onNewThread ? tell("callBackOnNewThread") : callStaticVoid(env(), fixture::NativeCallback, "call");
        EXPECT_EQ(nativeActionsRun.exchange(0), 1);
        nativeAction = nullptr;
    }

    /// So many requests were made, all with one publisher, which the first callback serves.
    void expectOnePublisherFor(std::size_t requests) {
        EXPECT_EQ(publishers().size(), requests);
        EXPECT_THAT(publishers(), Each("0"));
        EXPECT_EQ(recorder.countOnAllThreads("NewObject com/corvallen/storage/provider/NativePublisher"), 1U);
        EXPECT_EQ(recorder.liveGlobals(), 0);
        EXPECT_EQ(recorder.liveWeaks(), 1);
        publish();
        EXPECT_EQ(log.size(), 1U);
    }

    void startAgain() {
        start([this](auto&&...) { later = true; });
    }

    bool later = false;
};

TEST_F(PublisherLifeTest, SameThreadGetsTheSamePublisher) {
    start(log.callback());
    startAgain();
    startAgain();
    expectOnePublisherFor(3);
    EXPECT_FALSE(later);
}

TEST_F(PublisherLifeTest, AttachedThreadGetsTheSamePublisher) {
    start(log.callback());
    onFreshThread([&] {
        const storage::jvm::ThreadAttachment attachment(handle);
        startAgain();
        startAgain();
        EXPECT_EQ(recorder.liveLocals(), 0);
    });
    expectOnePublisherFor(3);
}

TEST_F(PublisherLifeTest, ThreadThatJavaDoesNotKnowGetsTheSamePublisher) {
    start(log.callback());
    onFreshThread([&] { startAgain(); });
    onFreshThread([&] { startAgain(); });
    expectOnePublisherFor(3);
    EXPECT_EQ(handle->attachments(), handle->detachments());
}

TEST_F(PublisherLifeTest, PublisherMayBeMadeByAThreadThatIsGone) {
    onFreshThread([&] { start(log.callback()); });
    startAgain();
    onFreshThread([&] { startAgain(); });
    expectOnePublisherFor(3);
}

TEST_F(PublisherLifeTest, ThreadInsideANativeMethodGetsTheSamePublisher) {
    start(log.callback());
    insideNativeMethod([&] { startAgain(); }, /*onNewThread=*/false);
    insideNativeMethod([&] { startAgain(); }, /*onNewThread=*/true);
    expectOnePublisherFor(3);
}

TEST_F(PublisherLifeTest, PublisherMayBeMadeInsideANativeMethod) {
    insideNativeMethod([&] { start(log.callback()); }, /*onNewThread=*/true);
    startAgain();
    insideNativeMethod([&] { startAgain(); }, /*onNewThread=*/true);
    expectOnePublisherFor(3);
}

TEST_F(PublisherLifeTest, CallbackItselfMayAskAgain) {
    start([this](auto&&...) { startAgain(); });
    publish();
    tell("publishOnNewThread", {"SelfModified", "java://w", "java://c", "File", "x"});
    EXPECT_THAT(publishers(), ElementsAre("0", "0", "0"));
    EXPECT_FALSE(later);
}

TEST_F(PublisherLifeTest, GarbageCollectionsDoNotMatterWhileJavaKeepsIt) {
    start(log.callback());
    tell("collectGarbage", {"100"});
    startAgain();
    onFreshThread([&] { startAgain(); });
    expectOnePublisherFor(3);
}

// ---- Java did not keep it ----

TEST_F(PublisherLifeTest, CollectedPublisherIsReplacedByOneForTheSameCallback) {
    start(log.callback());
    const auto first = recorder.record("NewObject com/corvallen/storage/provider/NativePublisher");
    tell("forget");
    tell("awaitCollection");
    tell("keep");
    startAgain();
    EXPECT_THAT(publishers(), ElementsAre("0", "1"));
    const auto made = recorder.records({.only = "NewObject com/corvallen/storage/provider/NativePublisher"});
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(made[1].longArgument(0), first.longArgument(0)) << "the handle is the same callback's";
    for (const JniCall& call : recorder.records({.only = "DeleteLocalRef"})) {
        EXPECT_NE(call.targetReference, made[1].resultReference) << "the provider keeps it; only a copy is released";
    }
    EXPECT_EQ(recorder.count("RegisterNatives"), 1U);
    publish();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_FALSE(later);
}

TEST_F(PublisherLifeTest, ReplacementHasTheOnlyWeakReference) {
    start(log.callback());
    const auto old = recorder.record("NewWeakGlobalRef").resultReference;
    tell("forget");
    tell("awaitCollection");
    tell("keep");
    startAgain();
    EXPECT_EQ(recorder.record("DeleteWeakGlobalRef").targetReference, old);
    EXPECT_EQ(recorder.liveWeaks(), 1);
    EXPECT_EQ(recorder.liveGlobals(), 0);
    startAgain();
    EXPECT_THAT(publishers(), ElementsAre("0", "1", "1")) << "and is found again";
    provider.reset();
    EXPECT_EQ(recorder.liveWeaks(), 0);
}

TEST_F(PublisherLifeTest, CollectedPublisherIsReplacedOnAThreadThatJavaDoesNotKnow) {
    onFreshThread([&] { start(log.callback()); });
    tell("forget");
    tell("awaitCollection");
    tell("keep");
    onFreshThread([&] { startAgain(); });
    startAgain();
    EXPECT_THAT(publishers(), ElementsAre("0", "1", "1"));
    publish();
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(PublisherLifeTest, NothingOfTheLibraryKeepsThePublisherAlive) {
    start(log.callback());
    startAgain();
    onFreshThread([&] { startAgain(); });
    tell("forget");
    EXPECT_NO_THROW(tell("awaitCollection"));
}

TEST_F(PublisherLifeTest, ManyThreadsReplaceACollectedPublisherOnce) {
    constexpr std::size_t Threads = 16;
    start(log.callback());
    tell("forget");
    tell("awaitCollection");
    tell("keep");
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < Threads; ++i) {
            threads.emplace_back([&] { startAgain(); });
        }
    }
    auto numbers = publishers();
    ASSERT_EQ(numbers.size(), Threads + 1);
    EXPECT_EQ(numbers.front(), "0");
    numbers.erase(numbers.begin());
    EXPECT_THAT(numbers, Each("1"));
    EXPECT_EQ(recorder.liveWeaks(), 1);
}

}  // namespace
}  // namespace storage::javaprovider::test
