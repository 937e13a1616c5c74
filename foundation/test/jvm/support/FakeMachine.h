#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace test {

/// A virtual machine that consists of function tables. The test chooses its answers, even those that a real one does
/// not give on demand.
/// Records the calls by name. For one thread.
class FakeMachine final {
public:
    FakeMachine();

    FakeMachine(const FakeMachine&) = delete;
    FakeMachine& operator=(const FakeMachine&) = delete;

    [[nodiscard]] JavaVM* vm() noexcept { return &m_vm; }
    [[nodiscard]] JNIEnv* env() noexcept { return &m_env; }
    [[nodiscard]] const std::vector<std::string>& calls() const noexcept { return m_calls; }

    jint getEnvAnswer = JNI_OK;  ///< JNI_EDETACHED until an attachment that is answered with JNI_OK
    jint attachAnswer = JNI_OK;  ///< of both kinds of attachment
    jint frameAnswer = JNI_OK;   ///< of PushLocalFrame
    bool exceptionPending = false;

private:
    static FakeMachine& of(JavaVM* vm);
    static FakeMachine& of(JNIEnv* env);
    static jint JNICALL getEnv(JavaVM* vm, void** env, jint version);
    static jint JNICALL attach(JavaVM* vm, void** env, void* arguments);
    static jint JNICALL attachAsDaemon(JavaVM* vm, void** env, void* arguments);
    static jint JNICALL detach(JavaVM* vm);
    static jint JNICALL pushLocalFrame(JNIEnv* env, jint capacity);
    static jobject JNICALL popLocalFrame(JNIEnv* env, jobject result);
    static jboolean JNICALL exceptionCheck(JNIEnv* env);
    static void JNICALL exceptionClear(JNIEnv* env);

    jint answerAttachment(void** env, const char* name);

    JavaVM m_vm{};
    JNIEnv m_env{};
    JNIInvokeInterface_ m_machineTable{};
    JNINativeInterface_ m_envTable{};
    std::vector<std::string> m_calls;
};

}  // namespace test
