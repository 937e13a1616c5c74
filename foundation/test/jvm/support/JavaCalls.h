#pragma once

#include <jni.h>

#include <string>

namespace test {

/// What the tests ask of Java, with nothing on the class path. Each needs an attached thread without a pending
/// exception, and leaves the local references that it makes to the caller's frame.

/// Whether the calling thread has an environment of this machine.
[[nodiscard]] bool isAttached(JavaVM* vm);

/// The calling thread's environment, or null.
[[nodiscard]] JNIEnv* envOf(JavaVM* vm);

/// System.getProperty(), "<null>" for none.
[[nodiscard]] std::string systemProperty(JNIEnv* env, const std::string& name);

/// System.getenv(), "<null>" for none.
[[nodiscard]] std::string environmentVariable(JNIEnv* env, const std::string& name);

/// Whether ClassLoader.getSystemResource() finds something of that name on the class path.
[[nodiscard]] bool isOnClassPath(JNIEnv* env, const std::string& resource);

/// Creates an empty file through java.nio. Returns the exception's text, empty for success.
[[nodiscard]] std::string createFile(JNIEnv* env, const std::u16string& path);

/// Whether the calling thread is a Java daemon thread.
[[nodiscard]] bool isDaemon(JNIEnv* env);

/// Runs the garbage collector until the weak reference is cleared or ten seconds have gone by.
[[nodiscard]] bool isCollected(JNIEnv* env, jweak reference);

/// Throws a java.lang.IllegalStateException with the text in Java: it stays pending.
void throwInJava(JNIEnv* env, const std::string& text);

}  // namespace test
