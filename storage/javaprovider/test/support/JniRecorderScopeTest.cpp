// Which calls a recorder notes, and which of them a test gets.
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
using ::testing::IsEmpty;

class JniRecorderScopeTest : public RecordedJvmTest {};

TEST_F(JniRecorderScopeTest, CallsOfTheRuntimesOwnLibrariesAreNotRecorded) {
    // Looking at a folder runs native code of the Java runtime that finds classes and makes strings.
    const jclass file = env()->FindClass("java/io/File");
    const jmethodID constructor = env()->GetMethodID(file, "<init>", "(Ljava/lang/String;)V");
    const jobject folder = env()->NewObject(file, constructor, javaString(env(), u"/"));
    const jmethodID list = env()->GetMethodID(file, "list", "()[Ljava/lang/String;");
    recorder.clear();
    recorder.fail({.call = "NewString", .failure = JniFailure::silent()});

    const jobject names = env()->CallObjectMethod(folder, list);
    ASSERT_NE(names, nullptr);
    EXPECT_GT(env()->GetArrayLength(static_cast<jobjectArray>(names)), 0);
    EXPECT_THAT(recorder.calls({.allThreads = true}),
                ElementsAre("CallObjectMethod list()[Ljava/lang/String;", "GetArrayLength"));
    EXPECT_EQ(recorder.liveLocals(), 1);

    recorder.clear();
    env()->PushLocalFrame(1);
    env()->PopLocalFrame(nullptr);
    for (const jobject reference : {names, folder, jobject{file}}) {
        const JniRecorder::Unrecorded unrecorded;
        env()->DeleteLocalRef(reference);
    }
}

TEST_F(JniRecorderScopeTest, CallsOfANativeMethodThatJavaCallsBackAreRecorded) {
    const jclass fixture = findClass(env(), fixture::NativeCallback);
    JNINativeMethod method{const_cast<char*>("callBack"), const_cast<char*>("()V"),
                           reinterpret_cast<void*>(+[](JNIEnv* inner, jclass) {
                               inner->DeleteLocalRef(inner->NewStringUTF("released"));
                               const jstring left = inner->NewStringUTF("left to the machine");
                               ASSERT_NE(left, nullptr);  // so that a JNI call is not the very last step
                           })};
    ASSERT_EQ(env()->RegisterNatives(fixture, &method, 1), JNI_OK);
    const jmethodID call = env()->GetStaticMethodID(fixture, "call", "()V");
    recorder.clear();
    env()->CallStaticVoidMethod(fixture, call);

    EXPECT_THAT(recorder.calls(),
                ElementsAre("CallStaticVoidMethod com/corvallen/storage/test/NativeCallback call()V",
                            "NewStringUTF released", "DeleteLocalRef", "NewStringUTF left to the machine"));
    EXPECT_EQ(recorder.liveLocals(), 0);
    const JniRecorder::Unrecorded unrecorded;
    env()->DeleteLocalRef(fixture);
}

TEST_F(JniRecorderScopeTest, FiltersChooseThreadsAndKinds) {
    const ThreadNumber here = thisThread();
    ThreadNumber there = 0;
    onFreshThread([&] {
        const AttachedScope attached(vm());
        there = thisThread();
        attached.env()->ExceptionCheck();
    });
    env()->PushLocalFrame(4);
    env()->ExceptionCheck();
    env()->PopLocalFrame(nullptr);

    ASSERT_NE(here, there);
    EXPECT_THAT(recorder.calls(), ElementsAre("PushLocalFrame", "ExceptionCheck", "PopLocalFrame"));
    EXPECT_THAT(recorder.calls({.exceptionChecks = false}), ElementsAre("PushLocalFrame", "PopLocalFrame"));
    EXPECT_THAT(recorder.calls({.localFrames = false}), ElementsAre("ExceptionCheck"));
    EXPECT_THAT(recorder.calls({.thread = there}), ElementsAre("ExceptionCheck"));
    EXPECT_EQ(recorder.calls({.allThreads = true}).size(), 4U);
    EXPECT_EQ(recorder.countOnAllThreads("ExceptionCheck"), 2U);
    EXPECT_EQ(recorder.count("ExceptionCheck"), 1U);
}

TEST_F(JniRecorderScopeTest, PatternsMatchWholeParts) {
    env()->DeleteLocalRef(env()->FindClass("java/util/HashMap"));
    EXPECT_EQ(recorder.count("FindClass"), 1U);
    EXPECT_EQ(recorder.count("FindClass java/util/HashMap"), 1U);
    EXPECT_EQ(recorder.count("FindClass java/util/Hash"), 0U);
    EXPECT_EQ(recorder.count("Find"), 0U);
    EXPECT_THROW((void)recorder.record("NewString"), std::logic_error);
}

TEST_F(JniRecorderScopeTest, NothingIsKeptWhenCallsAreNotWanted) {
    recorder.keepCalls(false);
    const jstring made = env()->NewStringUTF("unseen");
    EXPECT_THAT(recorder.calls(), IsEmpty());
    EXPECT_EQ(recorder.liveLocals(), 1);
    recorder.keepCalls(true);
    env()->DeleteLocalRef(made);
    EXPECT_THAT(recorder.calls(), ElementsAre("DeleteLocalRef"));
}

TEST_F(JniRecorderScopeTest, OnlyOneRecorderLivesAtATime) {
    EXPECT_EQ(JniRecorder::current(), &recorder);
    EXPECT_THROW(JniRecorder second(vm()), std::logic_error);
}

}  // namespace

}  // namespace storage::javaprovider::test
