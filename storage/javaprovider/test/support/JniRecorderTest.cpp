#include "support/JniRecorder.h"

#include <gmock/gmock.h>

#include <array>
#include <stdexcept>
#include <string>

#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;

/// What a recorder notes of a call.
class JniRecorderTest : public RecordedJvmTest {
protected:
    jstring text(const std::u16string& units) { return javaString(env(), units); }
};

TEST_F(JniRecorderTest, ClassAndMethodLookupsCarryTheirNames) {
    const jclass map = env()->FindClass("java/util/HashMap");
    ASSERT_NE(env()->GetMethodID(map, "<init>", "()V"), nullptr);
    const jclass runtime = env()->FindClass("java/lang/Runtime");
    ASSERT_NE(env()->GetStaticMethodID(runtime, "getRuntime", "()Ljava/lang/Runtime;"), nullptr);
    env()->DeleteLocalRef(runtime);
    env()->DeleteLocalRef(map);

    EXPECT_THAT(recorder.calls(), ElementsAre("FindClass java/util/HashMap", "GetMethodID java/util/HashMap <init>()V",
                                              "FindClass java/lang/Runtime",
                                              "GetStaticMethodID java/lang/Runtime getRuntime()Ljava/lang/Runtime;",
                                              "DeleteLocalRef", "DeleteLocalRef"));
}

TEST_F(JniRecorderTest, StaticFieldsCarryClassAndName) {
    const jclass boolean = env()->FindClass("java/lang/Boolean");
    const jfieldID field = env()->GetStaticFieldID(boolean, "TRUE", "Ljava/lang/Boolean;");
    const jobject value = env()->GetStaticObjectField(boolean, field);
    EXPECT_EQ(env()->IsInstanceOf(value, boolean), JNI_TRUE);
    env()->DeleteLocalRef(value);
    env()->DeleteLocalRef(boolean);

    EXPECT_THAT(recorder.calls(), ElementsAre("FindClass java/lang/Boolean",
                                              "GetStaticFieldID java/lang/Boolean TRUE Ljava/lang/Boolean;",
                                              "GetStaticObjectField java/lang/Boolean TRUE",
                                              "IsInstanceOf java/lang/Boolean", "DeleteLocalRef", "DeleteLocalRef"));
}

TEST_F(JniRecorderTest, ConstructorsCarryClassAndSignature) {
    const jclass builder = env()->FindClass("java/lang/StringBuilder");
    const jmethodID constructor = env()->GetMethodID(builder, "<init>", "(I)V");
    const jobject made = env()->NewObject(builder, constructor, jint{7});
    const jvalue argument{.i = 8};
    const jobject other = env()->NewObjectA(builder, constructor, &argument);
    const auto calls = recorder.records({.only = "NewObject java/lang/StringBuilder <init>(I)V"});
    env()->DeleteLocalRef(other);
    env()->DeleteLocalRef(made);
    env()->DeleteLocalRef(builder);

    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].intArgument(0), 7);
    EXPECT_EQ(calls[0].result, made);
    EXPECT_EQ(calls[1].intArgument(0), 8);
}

TEST_F(JniRecorderTest, CallsOfEachResultCarryNameAndSignature) {
    const jstring greeting = text(u"abc");
    const jclass string = env()->GetObjectClass(greeting);
    const jmethodID isEmpty = env()->GetMethodID(string, "isEmpty", "()Z");
    const jmethodID length = env()->GetMethodID(string, "length", "()I");
    const jmethodID trim = env()->GetMethodID(string, "trim", "()Ljava/lang/String;");
    recorder.clear();

    EXPECT_EQ(env()->CallBooleanMethod(greeting, isEmpty), JNI_FALSE);
    EXPECT_EQ(env()->CallBooleanMethodA(greeting, isEmpty, nullptr), JNI_FALSE);
    EXPECT_EQ(env()->CallIntMethod(greeting, length), 3);
    EXPECT_EQ(env()->CallIntMethodA(greeting, length, nullptr), 3);
    EXPECT_EQ(recorder.liveLocals(), 0);
    env()->DeleteLocalRef(env()->CallObjectMethod(greeting, trim));
    env()->DeleteLocalRef(env()->CallObjectMethodA(greeting, trim, nullptr));

    EXPECT_THAT(recorder.calls(),
                ElementsAre("CallBooleanMethod isEmpty()Z", "CallBooleanMethod isEmpty()Z", "CallIntMethod length()I",
                            "CallIntMethod length()I", "CallObjectMethod trim()Ljava/lang/String;", "DeleteLocalRef",
                            "CallObjectMethod trim()Ljava/lang/String;", "DeleteLocalRef"));
    env()->DeleteLocalRef(string);
    recorder.clear();
}

TEST_F(JniRecorderTest, ArgumentsOfEveryTypeAreRead) {
    const jclass buffer = findClass(env(), "java/nio/ByteBuffer");
    const jmethodID allocate = env()->GetStaticMethodID(buffer, "allocate", "(I)Ljava/nio/ByteBuffer;");
    const jobject bytes = env()->CallStaticObjectMethod(buffer, allocate, jint{64});
    const auto put = [&](const char* name, const char* signature, auto value) {
        const jmethodID method = env()->GetMethodID(buffer, name, signature);
        env()->DeleteLocalRef(env()->CallObjectMethod(bytes, method, jint{8}, value));
        return recorder.records({.only = std::string("CallObjectMethod ") + name}).back().arguments.at(1);
    };

    EXPECT_EQ(put("put", "(IB)Ljava/nio/ByteBuffer;", jbyte{-3}).value.b, -3);
    EXPECT_EQ(put("putChar", "(IC)Ljava/nio/ByteBuffer;", jchar{0xFFFE}).value.c, 0xFFFE);
    EXPECT_EQ(put("putShort", "(IS)Ljava/nio/ByteBuffer;", jshort{-300}).value.s, -300);
    EXPECT_EQ(put("putInt", "(II)Ljava/nio/ByteBuffer;", jint{-70000}).value.i, -70000);
    EXPECT_EQ(put("putLong", "(IJ)Ljava/nio/ByteBuffer;", jlong{-1} << 40).value.j, jlong{-1} << 40);
    EXPECT_EQ(put("putFloat", "(IF)Ljava/nio/ByteBuffer;", jfloat{1.5F}).value.f, 1.5F);
    EXPECT_EQ(put("putDouble", "(ID)Ljava/nio/ByteBuffer;", jdouble{2.5}).value.d, 2.5);
    env()->DeleteLocalRef(bytes);
    env()->DeleteLocalRef(buffer);
    recorder.clear();
}

TEST_F(JniRecorderTest, VoidAndLongCallsCarryBooleansLongsAndObjects) {
    const jclass longs = env()->FindClass("java/util/concurrent/atomic/AtomicLong");
    const jobject counter = env()->NewObject(longs, env()->GetMethodID(longs, "<init>", "(J)V"), jlong{40});
    env()->CallVoidMethod(counter, env()->GetMethodID(longs, "set", "(J)V"), jlong{1} << 33);
    const jvalue step{.j = 2};
    EXPECT_EQ(env()->CallLongMethodA(counter, env()->GetMethodID(longs, "addAndGet", "(J)J"), &step),
              (jlong{1} << 33) + 2);
    const jclass flags = env()->FindClass("java/util/concurrent/atomic/AtomicBoolean");
    const jobject flag = env()->NewObject(flags, env()->GetMethodID(flags, "<init>", "(Z)V"), JNI_TRUE);

    EXPECT_EQ(recorder.record("CallVoidMethod set").longArgument(0), jlong{1} << 33);
    EXPECT_EQ(recorder.record("CallLongMethod addAndGet(J)J").longArgument(0), 2);
    EXPECT_TRUE(recorder.record("NewObject java/util/concurrent/atomic/AtomicBoolean").booleanArgument(0));
    EXPECT_EQ(recorder.record("CallVoidMethod set").target, counter);
    EXPECT_THROW((void)recorder.record("CallVoidMethod set").booleanArgument(0), std::logic_error);
    EXPECT_THROW((void)recorder.record("CallVoidMethod set").longArgument(1), std::out_of_range);
    for (const jobject reference : {flag, jobject{flags}, counter, jobject{longs}}) {
        env()->DeleteLocalRef(reference);
    }
}

TEST_F(JniRecorderTest, StringsCarryTheirTextAsUtf8) {
    const std::u16string units = u"ä \U0001F600";
    env()->DeleteLocalRef(env()->NewString(reinterpret_cast<const jchar*>(units.data()), jsize{4}));
    env()->DeleteLocalRef(env()->NewStringUTF("java.util.HashMap"));

    EXPECT_THAT(recorder.calls(), ElementsAre("NewString ä \U0001F600", "DeleteLocalRef",
                                              "NewStringUTF java.util.HashMap", "DeleteLocalRef"));
}

TEST_F(JniRecorderTest, ArraysBuffersAndThrowsAreRecorded) {
    const jobjectArray array = [&] {
        const JniRecorder::Unrecorded unrecorded;
        const jclass strings = findClass(env(), "java/lang/String");
        return env()->NewObjectArray(3, strings, text(u"element"));
    }();
    std::array<char, 16> memory{};
    EXPECT_EQ(env()->GetArrayLength(array), 3);
    env()->DeleteLocalRef(env()->GetObjectArrayElement(array, 2));
    env()->DeleteLocalRef(env()->NewDirectByteBuffer(memory.data(), 16));
    const jclass failure = env()->FindClass("java/lang/IllegalStateException");
    EXPECT_EQ(env()->ThrowNew(failure, "thrown by a test"), JNI_OK);
    const jthrowable thrown = env()->ExceptionOccurred();
    env()->ExceptionClear();
    EXPECT_EQ(env()->Throw(thrown), JNI_OK);
    env()->ExceptionClear();
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    env()->DeleteLocalRef(thrown);
    env()->DeleteLocalRef(failure);

    EXPECT_THAT(recorder.calls(),
                ElementsAre("GetArrayLength", "GetObjectArrayElement 2", "DeleteLocalRef", "NewDirectByteBuffer 16",
                            "DeleteLocalRef", "FindClass java/lang/IllegalStateException",
                            "ThrowNew java/lang/IllegalStateException", "ExceptionOccurred", "ExceptionClear", "Throw",
                            "ExceptionClear", "ExceptionCheck", "DeleteLocalRef", "DeleteLocalRef"));
}

TEST_F(JniRecorderTest, PendingExceptionsAreNoticed) {
    const jclass failure = env()->FindClass("java/lang/IllegalStateException");
    env()->ThrowNew(failure, "pending");
    env()->ExceptionClear();
    env()->DeleteLocalRef(failure);

    EXPECT_FALSE(recorder.record("ThrowNew").pendingBefore);
    EXPECT_TRUE(recorder.record("ThrowNew").pendingAfter);
    EXPECT_TRUE(recorder.record("ExceptionClear").pendingBefore);
    EXPECT_FALSE(recorder.record("ExceptionClear").pendingAfter);
}

TEST_F(JniRecorderTest, MethodIdsFromBeforeTheRecordingHaveNames) {
    const jstring word = text(u"word");
    jmethodID length = nullptr;
    {
        const JniRecorder::Unrecorded unrecorded;
        length = env()->GetMethodID(findClass(env(), "java/lang/String"), "length", "()I");
    }
    EXPECT_EQ(env()->CallIntMethod(word, length), 4);
    EXPECT_THAT(recorder.calls(), ElementsAre("CallIntMethod length()I"));
}

TEST_F(JniRecorderTest, NativeMethodsAreRecordedWithTheirNames) {
    const jclass fixture = env()->FindClass(fixture::NativeCallback);
    JNINativeMethod method{const_cast<char*>("callBack"), const_cast<char*>("()V"),
                           reinterpret_cast<void*>(+[](JNIEnv*, jclass) {})};
    EXPECT_EQ(env()->RegisterNatives(fixture, &method, 1), JNI_OK);
    env()->DeleteLocalRef(fixture);

    EXPECT_EQ(recorder.count("RegisterNatives com/corvallen/storage/test/NativeCallback callBack()V"), 1U);
}

TEST_F(JniRecorderTest, ReferencesCanBeFollowedThroughCalls) {
    const jstring first = env()->NewStringUTF("first");
    const jstring second = env()->NewStringUTF("second");
    env()->DeleteLocalRef(second);
    env()->DeleteLocalRef(first);

    const auto deleted = recorder.records({.only = "DeleteLocalRef"});
    EXPECT_EQ(deleted.at(0).targetReference, recorder.record("NewStringUTF second").resultReference);
    EXPECT_EQ(deleted.at(1).targetReference, recorder.record("NewStringUTF first").resultReference);
    EXPECT_NE(deleted.at(0).targetReference, 0U);
}

}  // namespace

}  // namespace storage::javaprovider::test
