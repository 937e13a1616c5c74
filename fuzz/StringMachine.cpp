#include "StringMachine.h"

namespace fuzz {

namespace {

std::u16string lastString;
int held = 0;

jstring newString(JNIEnv* /*env*/, const jchar* units, jsize count) {
    lastString.assign(reinterpret_cast<const char16_t*>(units), static_cast<std::size_t>(count));
    return reinterpret_cast<jstring>(&lastString);
}

const jchar* getStringChars(JNIEnv* /*env*/, jstring text, jboolean* /*isCopy*/) {
    ++held;
    return reinterpret_cast<const jchar*>(reinterpret_cast<std::u16string*>(text)->c_str());
}

void releaseStringChars(JNIEnv* /*env*/, jstring /*text*/, const jchar* /*units*/) { --held; }

jboolean exceptionCheck(JNIEnv* /*env*/) { return JNI_FALSE; }

jint pushLocalFrame(JNIEnv* /*env*/, jint /*capacity*/) { return JNI_OK; }

jobject popLocalFrame(JNIEnv* /*env*/, jobject result) { return result; }

JNINativeInterface_ makeFunctions() {
    JNINativeInterface_ functions{};
    functions.NewString = newString;
    functions.GetStringChars = getStringChars;
    functions.ReleaseStringChars = releaseStringChars;
    functions.ExceptionCheck = exceptionCheck;
    functions.PushLocalFrame = pushLocalFrame;
    functions.PopLocalFrame = popLocalFrame;
    return functions;
}

jint getEnv(JavaVM* /*vm*/, void** env, jint /*version*/) {
    static const JNINativeInterface_ functions = makeFunctions();
    static JNIEnv theEnv{&functions};
    *env = &theEnv;
    return JNI_OK;
}

}  // namespace

JavaVM* StringMachine::getJavaVM() {
    static const JNIInvokeInterface_ functions{nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, getEnv, nullptr};
    static JavaVM vm{&functions};
    return &vm;
}

int StringMachine::charactersHeld() noexcept { return held; }

}  // namespace fuzz
