#pragma once

#include <jni.h>

namespace storage::jvm::detail {

/// The JNI version that the library asks for. Every Java since 8 has it.
inline constexpr jint JniVersion = JNI_VERSION_1_8;

/// The calling thread's environment, or null when it has none: the thread is not attached, or the machine was
/// destroyed. Cheap, makes no transition into the virtual machine, and is safe after DestroyJavaVM.
[[nodiscard]] JNIEnv* attachedEnv(JavaVM* vm) noexcept;

/// The calling thread's environment, or null when it is not attached. Throws AnonymousInternalException
/// <std::runtime_error> when the machine answers with anything else.
[[nodiscard]] JNIEnv* findEnv(JavaVM* vm);

/// Detaches the calling thread; a pending Java exception is dropped first, since the machine would print it.
/// Returns the JNI error number: JNI_ERR when Java methods are on the thread's stack.
[[gnu::cold]] jint detachThread(JavaVM* vm, JNIEnv* env) noexcept;

}  // namespace storage::jvm::detail
