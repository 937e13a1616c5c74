#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "support/AttachedScope.h"
#include "support/Eventually.h"
#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"
#include "support/JniRecorder.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::IsEmpty;

/// What begins and ends with a recorder.
class JniRecorderLifeTest : public JvmTest {};

TEST_F(JniRecorderLifeTest, NothingIsRecordedBeforeAndAfter) {
    const jstring before = env()->NewStringUTF("before");
    {
        const JniRecorder recorder(vm());
        EXPECT_THAT(recorder.calls(), IsEmpty());
    }
    const JniRecorder recorder(vm());
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    const JniRecorder::Unrecorded unrecorded;
    env()->DeleteLocalRef(before);
}

TEST_F(JniRecorderLifeTest, TheMachinesOwnFunctionsAreBackAfterwards) {
    const auto* const functions = env()->functions;
    const auto before = functions->NewStringUTF;
    {
        const JniRecorder recorder(vm());
        EXPECT_NE(functions->NewStringUTF, before);
    }
    EXPECT_EQ(functions->NewStringUTF, before);
    EXPECT_EQ(JniRecorder::current(), nullptr);
}

TEST_F(JniRecorderLifeTest, AThreadThatIsNotAttachedCanRecordAndStaysSo) {
    onFreshThread([] {
        const JniRecorder recorder(vm());
        EXPECT_FALSE(isAttached(vm()));
        EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    });
}

TEST_F(JniRecorderLifeTest, ACallThatOutlivesTheRecorderEndsNormally) {
    auto recorder = std::make_unique<JniRecorder>(vm());
    const jobject global = env()->NewGlobalRef(newObject(env(), fixture::ScriptedProvider));
    callStaticVoid(env(), fixture::Gate, "close", {"dispose"});
    std::thread other([&] {
        const AttachedScope attached(vm());
        const jclass provider = attached.env()->GetObjectClass(global);
        attached.env()->CallVoidMethod(global, attached.env()->GetMethodID(provider, "dispose", "()V"));
    });
    callStaticVoid(env(), fixture::Gate, "awaitWaiting", {"dispose", "1", "10000"});
    EXPECT_EQ(recorder->countOnAllThreads("CallVoidMethod dispose()V"), 1U);
    recorder.reset();
    callStaticVoid(env(), fixture::Gate, "open", {"dispose"});
    other.join();
    env()->DeleteGlobalRef(global);
}

TEST_F(JniRecorderLifeTest, ThreadsMayCallWhileRecordersComeAndGo) {
    std::atomic<bool> stop = false;
    std::atomic<int> calling = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            const AttachedScope attached(vm());
            ++calling;
            while (!stop) {
                attached.env()->DeleteLocalRef(attached.env()->NewStringUTF("made meanwhile"));
            }
        });
    }
    EXPECT_TRUE(eventually([&] { return calling == 4; }));
    for (int i = 0; i < 20; ++i) {
        const JniRecorder recorder(vm());
        EXPECT_TRUE(eventually([&] { return recorder.countOnAllThreads("NewStringUTF made meanwhile") > 0; }));
    }
    stop = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace

}  // namespace storage::javaprovider::test
