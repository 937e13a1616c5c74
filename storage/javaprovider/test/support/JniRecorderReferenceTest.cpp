#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

#include "support/AttachedScope.h"
#include "support/JavaHelpers.h"
#include "support/JniRecorder.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// How a recorder counts references.
class JniRecorderReferenceTest : public RecordedJvmTest {};

TEST_F(JniRecorderReferenceTest, LocalReferencesAreCountedUntilTheyAreDeleted) {
    const jclass map = env()->FindClass("java/util/HashMap");
    const jobject copy = env()->NewLocalRef(map);
    EXPECT_EQ(recorder.liveLocals(), 2);
    env()->DeleteLocalRef(copy);
    EXPECT_EQ(recorder.liveLocals(), 1);
    env()->DeleteLocalRef(map);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_THAT(recorder.leaks(), IsEmpty());
}

TEST_F(JniRecorderReferenceTest, TheMostAtATimeIsKeptUntilTheRecorderIsCleared) {
    const jclass map = env()->FindClass("java/util/HashMap");
    const jobject copy = env()->NewLocalRef(map);
    env()->DeleteLocalRef(copy);
    env()->DeleteLocalRef(env()->NewLocalRef(map));
    EXPECT_EQ(recorder.peakLocals(), 2);
    env()->DeleteLocalRef(map);
    EXPECT_EQ(recorder.peakLocals(), 2);
    recorder.clear();
    EXPECT_EQ(recorder.peakLocals(), 0);
}

TEST_F(JniRecorderReferenceTest, DeletingNullChangesNothing) {
    env()->DeleteLocalRef(nullptr);
    env()->DeleteGlobalRef(nullptr);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(recorder.liveGlobals(), 0);
}

TEST_F(JniRecorderReferenceTest, APoppedFrameReleasesWhatIsLeftInIt) {
    const jclass outer = env()->FindClass("java/lang/String");
    ASSERT_EQ(env()->PushLocalFrame(8), JNI_OK);
    (void)env()->FindClass("java/util/HashMap");
    (void)env()->NewStringUTF("left");
    EXPECT_EQ(recorder.liveLocals(), 3);
    env()->PopLocalFrame(nullptr);
    EXPECT_EQ(recorder.liveLocals(), 1);
    EXPECT_THAT(recorder.takeLeftToFrames(), ElementsAre("FindClass java/util/HashMap", "NewStringUTF left"));
    env()->DeleteLocalRef(outer);
}

TEST_F(JniRecorderReferenceTest, WhatIsReleasedOneByOneIsNotLeftToTheFrame) {
    ASSERT_EQ(env()->PushLocalFrame(8), JNI_OK);
    env()->DeleteLocalRef(env()->NewStringUTF("released"));
    const jclass map = env()->FindClass("java/util/HashMap");
    (void)env()->GetObjectClass(map);
    env()->DeleteLocalRef(map);
    env()->PopLocalFrame(nullptr);
    recorder.clear();
    EXPECT_THAT(recorder.takeLeftToFrames(), ElementsAre("GetObjectClass of FindClass java/util/HashMap"));
    EXPECT_THAT(recorder.takeLeftToFrames(), IsEmpty());
}

TEST_F(JniRecorderReferenceTest, TheResultOfAPoppedFrameLivesOnOutside) {
    env()->PushLocalFrame(8);
    env()->PushLocalFrame(8);
    const jstring inner = env()->NewStringUTF("kept");
    const jobject kept = env()->PopLocalFrame(inner);
    EXPECT_EQ(recorder.liveLocals(), 1);
    EXPECT_THAT(recorder.takeLeftToFrames(), IsEmpty());
    env()->PopLocalFrame(nullptr);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_THAT(recorder.takeLeftToFrames(), ElementsAre("PopLocalFrame"));
    EXPECT_NE(kept, nullptr);
}

TEST_F(JniRecorderReferenceTest, AReferenceOfAnOuterFrameCanBeDeletedInAnInnerOne) {
    const jclass outer = env()->FindClass("java/lang/String");
    env()->PushLocalFrame(8);
    env()->DeleteLocalRef(outer);
    EXPECT_EQ(recorder.liveLocals(), 0);
    env()->PopLocalFrame(nullptr);
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(JniRecorderReferenceTest, AFrameThatWasPushedUnseenIsPoppedAllTheSame) {
    {
        const JniRecorder::Unrecorded unrecorded;
        env()->PushLocalFrame(8);
    }
    (void)env()->NewStringUTF("left");
    env()->PopLocalFrame(nullptr);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_THAT(recorder.takeLeftToFrames(), ElementsAre("NewStringUTF left"));
}

TEST_F(JniRecorderReferenceTest, AFailedFrameOpensNothing) {
    recorder.fail({.call = "PushLocalFrame"});
    EXPECT_LT(env()->PushLocalFrame(8), 0);
    env()->ExceptionClear();
    const jstring made = env()->NewStringUTF("made");
    EXPECT_EQ(recorder.liveLocals(), 1);
    env()->DeleteLocalRef(made);
}

TEST_F(JniRecorderReferenceTest, GlobalAndWeakReferencesAreCountedForTheProcess) {
    const jclass map = findClass(env(), "java/util/HashMap");
    jobject global = nullptr;
    onFreshThread([&] {
        const AttachedScope attached(vm());
        global = attached.env()->NewGlobalRef(findClass(attached.env(), "java/util/HashMap"));
    });
    const jweak weak = env()->NewWeakGlobalRef(map);
    EXPECT_EQ(recorder.liveGlobals(), 1);
    EXPECT_EQ(recorder.liveWeaks(), 1);
    EXPECT_EQ(recorder.liveLocals(), 0);
    env()->DeleteGlobalRef(global);
    env()->DeleteWeakGlobalRef(weak);
    EXPECT_EQ(recorder.liveGlobals(), 0);
    EXPECT_EQ(recorder.liveWeaks(), 0);
}

TEST_F(JniRecorderReferenceTest, ReferencesFromBeforeCountDownwards) {
    jobject global = nullptr;
    jobject local = nullptr;
    {
        const JniRecorder::Unrecorded unrecorded;
        local = findClass(env(), "java/util/HashMap");
        global = env()->NewGlobalRef(local);
    }
    env()->DeleteGlobalRef(global);
    env()->DeleteLocalRef(local);
    EXPECT_EQ(recorder.liveGlobals(), -1);
    EXPECT_EQ(recorder.liveLocals(), -1);
    recorder.clear();
    EXPECT_EQ(recorder.liveGlobals(), 0);
}

TEST_F(JniRecorderReferenceTest, StringCharactersAreCounted) {
    const jstring word = javaString(env(), u"word");
    const jchar* chars = env()->GetStringChars(word, nullptr);
    const char* bytes = env()->GetStringUTFChars(word, nullptr);
    EXPECT_EQ(recorder.liveChars(), 2);
    EXPECT_THAT(recorder.leaks(),
                ElementsAre("string characters made by GetStringChars", "string characters made by GetStringUTFChars"));
    env()->ReleaseStringUTFChars(word, bytes);
    env()->ReleaseStringChars(word, chars);
    EXPECT_EQ(recorder.liveChars(), 0);
    EXPECT_EQ(env()->GetStringLength(word), 4);
}

TEST_F(JniRecorderReferenceTest, LeaksNameTheCallsTheyComeFrom) {
    const jclass map = env()->FindClass("java/util/HashMap");
    const jobject global = env()->NewGlobalRef(map);
    EXPECT_THAT(recorder.leaks(), ElementsAre("local reference of thread " + std::to_string(thisThread()) +
                                                  " made by FindClass java/util/HashMap",
                                              "global reference made by NewGlobalRef of FindClass java/util/HashMap"));
    env()->DeleteGlobalRef(global);
    env()->DeleteLocalRef(map);
}

TEST_F(JniRecorderReferenceTest, LocalReferencesBelongToTheirThread) {
    ThreadNumber other = 0;
    onFreshThread([&] {
        const AttachedScope attached(vm());
        (void)attached.env()->NewStringUTF("of the other thread");
        other = thisThread();
    });
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(recorder.liveLocals(other), 1);
}

TEST_F(JniRecorderReferenceTest, ManyThreadsAreCountedRight) {
    constexpr int Threads = 64;
    constexpr int Rounds = 1000;
    const jclass map = findClass(env(), "java/util/HashMap");
    const auto global = [&] {
        const JniRecorder::Unrecorded unrecorded;
        return env()->NewGlobalRef(map);
    }();
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&] {
            const AttachedScope attached(vm());
            for (int round = 0; round < Rounds; ++round) {
                const jobject made = attached.env()->NewLocalRef(global);
                const jobject weak = attached.env()->NewWeakGlobalRef(made);
                attached.env()->DeleteWeakGlobalRef(weak);
                attached.env()->DeleteLocalRef(made);
            }
            EXPECT_EQ(recorder.liveLocals(), 0);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(recorder.countOnAllThreads("NewLocalRef"), std::size_t{Threads} * Rounds);
    EXPECT_EQ(recorder.liveWeaks(), 0);
    EXPECT_THAT(recorder.leaks(), IsEmpty());
    const JniRecorder::Unrecorded unrecorded;
    env()->DeleteGlobalRef(global);
}

}  // namespace

}  // namespace storage::javaprovider::test
