#include "JavaCalls.h"

#include <chrono>

namespace test {

namespace {

std::string textOf(JNIEnv* env, jobject string) {
    if (string == nullptr) {
        return "<null>";
    }
    const char* const bytes = env->GetStringUTFChars(static_cast<jstring>(string), nullptr);
    std::string text = bytes;
    env->ReleaseStringUTFChars(static_cast<jstring>(string), bytes);
    return text;
}

jobject callStatic(JNIEnv* env, const char* className, const char* method, const char* signature, jvalue* arguments) {
    jclass const type = env->FindClass(className);
    return env->CallStaticObjectMethodA(type, env->GetStaticMethodID(type, method, signature), arguments);
}

jobject callWithText(JNIEnv* env, const char* className, const char* method, const char* signature,
                     const std::string& text) {
    jvalue argument{};
    argument.l = env->NewStringUTF(text.c_str());
    return callStatic(env, className, method, signature, &argument);
}

std::string takeException(JNIEnv* env) {
    jthrowable const thrown = env->ExceptionOccurred();
    if (thrown == nullptr) {
        return {};
    }
    env->ExceptionClear();
    jmethodID const toString = env->GetMethodID(env->GetObjectClass(thrown), "toString", "()Ljava/lang/String;");
    return textOf(env, env->CallObjectMethod(thrown, toString));
}

}  // namespace

JNIEnv* envOf(JavaVM* vm) {
    void* env = nullptr;
    return vm->GetEnv(&env, JNI_VERSION_1_8) == JNI_OK ? static_cast<JNIEnv*>(env) : nullptr;
}

bool isAttached(JavaVM* vm) { return envOf(vm) != nullptr; }

std::string systemProperty(JNIEnv* env, const std::string& name) {
    return textOf(env,
                  callWithText(env, "java/lang/System", "getProperty", "(Ljava/lang/String;)Ljava/lang/String;", name));
}

std::string environmentVariable(JNIEnv* env, const std::string& name) {
    return textOf(env, callWithText(env, "java/lang/System", "getenv", "(Ljava/lang/String;)Ljava/lang/String;", name));
}

bool isOnClassPath(JNIEnv* env, const std::string& resource) {
    return callWithText(env, "java/lang/ClassLoader", "getSystemResource", "(Ljava/lang/String;)Ljava/net/URL;",
                        resource) != nullptr;
}

std::string createFile(JNIEnv* env, const std::u16string& path) {
    jvalue arguments[2]{};
    arguments[0].l = env->NewString(reinterpret_cast<const jchar*>(path.data()), static_cast<jsize>(path.size()));
    arguments[1].l = env->NewObjectArray(0, env->FindClass("java/lang/String"), nullptr);
    jobject const javaPath = callStatic(env, "java/nio/file/Path", "of",
                                        "(Ljava/lang/String;[Ljava/lang/String;)Ljava/nio/file/Path;", arguments);
    if (env->ExceptionCheck() == JNI_TRUE) {
        return takeException(env);
    }
    arguments[0].l = javaPath;
    arguments[1].l = env->NewObjectArray(0, env->FindClass("java/nio/file/attribute/FileAttribute"), nullptr);
    callStatic(env, "java/nio/file/Files", "createFile",
               "(Ljava/nio/file/Path;[Ljava/nio/file/attribute/FileAttribute;)Ljava/nio/file/Path;", arguments);
    return takeException(env);
}

bool isDaemon(JNIEnv* env) {
    jobject const thread = callStatic(env, "java/lang/Thread", "currentThread", "()Ljava/lang/Thread;", nullptr);
    return env->CallBooleanMethod(thread, env->GetMethodID(env->FindClass("java/lang/Thread"), "isDaemon", "()Z")) ==
           JNI_TRUE;
}

bool isCollected(JNIEnv* env, jweak reference) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    jclass const system = env->FindClass("java/lang/System");
    jmethodID const collect = env->GetStaticMethodID(system, "gc", "()V");
    while (env->IsSameObject(reference, nullptr) == JNI_FALSE) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        env->CallStaticVoidMethod(system, collect);
    }
    return true;
}

void throwInJava(JNIEnv* env, const std::string& text) {
    env->ThrowNew(env->FindClass("java/lang/IllegalStateException"), text.c_str());
}

}  // namespace test
