#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "support/AttachedScope.h"
#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"
#include "support/JniRecorder.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// How a recorder makes calls fail.
class JniRecorderFaultTest : public RecordedJvmTest {};

TEST_F(JniRecorderFaultTest, TheCallFailsOnceWithAnOutOfMemoryErrorPending) {
    recorder.fail({.call = "NewStringUTF"});
    EXPECT_EQ(env()->NewStringUTF("first"), nullptr);
    EXPECT_THAT(takePendingException(env()), HasSubstr("java.lang.OutOfMemoryError"));
    const jstring second = env()->NewStringUTF("second");
    EXPECT_NE(second, nullptr);
    env()->DeleteLocalRef(second);

    EXPECT_EQ(recorder.faultsLeft(), 0U);
    EXPECT_TRUE(recorder.record("NewStringUTF first").failedOnPurpose);
    EXPECT_FALSE(recorder.record("NewStringUTF second").failedOnPurpose);
}

TEST_F(JniRecorderFaultTest, TheCallFailsSilently) {
    recorder.fail({.call = "FindClass", .failure = JniFailure::silent()});
    EXPECT_EQ(env()->FindClass("java/lang/String"), nullptr);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(JniRecorderFaultTest, TheCallFailsWithAnotherException) {
    recorder.fail({.call = "GetMethodID", .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
    const jclass string = findClass(env(), "java/lang/String");
    EXPECT_EQ(env()->GetMethodID(string, "length", "()I"), nullptr);
    EXPECT_THAT(takePendingException(env()), HasSubstr("java.lang.NoSuchMethodError"));
}

TEST_F(JniRecorderFaultTest, TheNthCallOfTheFunctionFails) {
    recorder.fail({.call = "ThrowNew", .occurrence = 2, .failure = JniFailure::silent()});
    const jclass failure = findClass(env(), "java/lang/IllegalStateException");
    EXPECT_EQ(env()->ThrowNew(failure, "one"), JNI_OK);
    env()->ExceptionClear();
    EXPECT_EQ(recorder.faultsLeft(), 1U);
    EXPECT_LT(env()->ThrowNew(failure, "two"), 0);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_F(JniRecorderFaultTest, OneJavaMethodCanBeSingledOut) {
    const jstring word = javaString(env(), u"word");
    const jclass string = findClass(env(), "java/lang/String");
    const jmethodID length = env()->GetMethodID(string, "length", "()I");
    const jmethodID hash = env()->GetMethodID(string, "hashCode", "()I");
    recorder.fail({.call = "CallIntMethod length", .failure = JniFailure::silent()});
    EXPECT_NE(env()->CallIntMethod(word, hash), 0);
    EXPECT_EQ(env()->CallIntMethod(word, length), 0);
    EXPECT_EQ(env()->CallIntMethod(word, length), 4);
}

TEST_F(JniRecorderFaultTest, AFailedVoidCallNeverReachesJava) {
    const jobject provider = newObject(env(), fixture::ScriptedProvider);
    callStaticVoid(env(), fixture::Script, "reset");
    const jclass type = findClass(env(), fixture::ScriptedProvider);
    const jmethodID dispose = env()->GetMethodID(type, "dispose", "()V");
    recorder.fail({.call = "CallVoidMethod dispose"});
    env()->CallVoidMethod(provider, dispose);
    EXPECT_THAT(takePendingException(env()), HasSubstr("OutOfMemoryError"));
    EXPECT_THAT(callStaticStrings(env(), fixture::Script, "calls"), ElementsAre());
    env()->CallVoidMethod(provider, dispose);
    EXPECT_THAT(callStaticStrings(env(), fixture::Script, "calls"), ElementsAre("dispose"));
}

TEST_F(JniRecorderFaultTest, TheNewFailureTakesThePlaceOfAPendingOne) {
    const jclass failure = findClass(env(), "java/lang/IllegalStateException");
    env()->ThrowNew(failure, "pending");
    recorder.fail({.call = "NewStringUTF"});
    EXPECT_EQ(env()->NewStringUTF("text"), nullptr);
    EXPECT_THAT(takePendingException(env()), HasSubstr("OutOfMemoryError"));
    env()->ThrowNew(failure, "pending");
    recorder.fail({.call = "NewStringUTF", .failure = JniFailure::silent()});
    EXPECT_EQ(env()->NewStringUTF("text"), nullptr);
    EXPECT_THAT(takePendingException(env()), HasSubstr("IllegalStateException"));
}

TEST_F(JniRecorderFaultTest, ASweepReachesEveryCallThatMayFail) {
    const auto operation = [&] {
        const jclass map = env()->FindClass("java/util/HashMap");
        const jmethodID constructor = map == nullptr ? nullptr : env()->GetMethodID(map, "<init>", "()V");
        const jobject made = constructor == nullptr ? nullptr : env()->NewObject(map, constructor);
        env()->ExceptionClear();
        env()->DeleteLocalRef(made);
        env()->DeleteLocalRef(map);
        return made != nullptr;
    };
    EXPECT_TRUE(operation());
    const std::size_t length = recorder.fallibleCalls();
    EXPECT_EQ(length, 3U);
    for (std::size_t n = 1; n <= length; ++n) {
        recorder.clear();
        recorder.fail({.occurrence = n});
        EXPECT_FALSE(operation()) << "call " << n;
        EXPECT_EQ(recorder.faultsLeft(), 0U);
        EXPECT_EQ(recorder.liveLocals(), 0);
    }
}

TEST_F(JniRecorderFaultTest, OnlyCallsOfTheAskingThreadCount) {
    recorder.fail({.call = "NewStringUTF", .failure = JniFailure::silent()});
    onFreshThread([] {
        const AttachedScope attached(vm());
        EXPECT_NE(attached.env()->NewStringUTF("other thread"), nullptr);
    });
    EXPECT_EQ(env()->NewStringUTF("this thread"), nullptr);
}

TEST_F(JniRecorderFaultTest, AFaultForAnyThreadHitsTheFirstThatCalls) {
    recorder.fail({.call = "NewStringUTF", .failure = JniFailure::silent(), .anyThread = true});
    onFreshThread([] {
        const AttachedScope attached(vm());
        EXPECT_EQ(attached.env()->NewStringUTF("other thread"), nullptr);
    });
    EXPECT_EQ(recorder.faultsLeft(), 0U);
}

TEST_F(JniRecorderFaultTest, SeveralFaultsHappenOneByOne) {
    recorder.fail({.call = "NewStringUTF", .failure = JniFailure::silent()});
    recorder.fail({.call = "NewStringUTF", .failure = JniFailure::silent()});
    EXPECT_EQ(env()->NewStringUTF("one"), nullptr);
    EXPECT_EQ(env()->NewStringUTF("two"), nullptr);
    const jstring three = env()->NewStringUTF("three");
    EXPECT_NE(three, nullptr);
    env()->DeleteLocalRef(three);
}

TEST_F(JniRecorderFaultTest, WhatCannotFailIsRefused) {
    EXPECT_THROW(recorder.fail({.call = "DeleteLocalRef"}), std::invalid_argument);
    EXPECT_THROW(recorder.fail({.call = "ExceptionCheck"}), std::invalid_argument);
    EXPECT_THROW(recorder.fail({.call = "CallVoidMethodV"}), std::invalid_argument);
    EXPECT_THROW(recorder.fail({.call = "FindClass", .failure = JniFailure::exception("no/such/Class")}),
                 std::invalid_argument);
    EXPECT_EQ(recorder.faultsLeft(), 0U);
    EXPECT_EQ(takePendingException(env()), "");
}

TEST_F(JniRecorderFaultTest, UnrecordedCallsNeverFail) {
    recorder.fail({.call = "NewString", .failure = JniFailure::silent()});
    EXPECT_NE(javaString(env(), u"by a helper"), nullptr);
    const char16_t unit = u'x';
    EXPECT_EQ(env()->NewString(reinterpret_cast<const jchar*>(&unit), 1), nullptr);
}

}  // namespace

}  // namespace storage::javaprovider::test
