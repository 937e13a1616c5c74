#pragma once

#include <jni.h>

#include <exception>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/JniRecorder.h"

namespace storage::javaprovider::test {

// What tests need of Java beside the code under test. None of it is seen by a recorder. Every function needs an
// attached thread and no pending exception; a Java exception becomes a std::runtime_error with its toString() text, or
// its class name when it has none.

/// A Java string with the same UTF-16 units; a local reference. An empty text gives an empty string, not null.
[[nodiscard]] jstring javaString(JNIEnv* env, const std::u16string& text);
/// The UTF-16 units of a Java string, U+0000 included; empty for null.
[[nodiscard]] std::u16string utf16(JNIEnv* env, jstring text);
/// The same as UTF-8; lone surrogates become U+FFFD.
[[nodiscard]] std::string utf8(JNIEnv* env, jstring text);

/// The class, through the machine's class path ("com/example/Name"); a local reference.
[[nodiscard]] jclass findClass(JNIEnv* env, const std::string& name);
/// A new object of the class, made by its constructor without arguments; a local reference.
[[nodiscard]] jobject newObject(JNIEnv* env, const std::string& className);

/// Calls a static method; text arguments and results are UTF-8.
void callStaticVoid(JNIEnv* env, const std::string& className, const std::string& method,
                    const std::vector<std::string>& texts = {});
[[nodiscard]] std::string callStaticString(JNIEnv* env, const std::string& className, const std::string& method,
                                           const std::vector<std::string>& texts = {});
[[nodiscard]] int callStaticInt(JNIEnv* env, const std::string& className, const std::string& method,
                                const std::vector<std::string>& texts = {});
/// For a method that returns Object; a local reference, or null.
[[nodiscard]] jobject callStaticObject(JNIEnv* env, const std::string& className, const std::string& method,
                                       const std::vector<std::string>& texts = {});
/// For a method that returns String[]: the elements, null as "(null)".
[[nodiscard]] std::vector<std::string> callStaticStrings(JNIEnv* env, const std::string& className,
                                                         const std::string& method,
                                                         const std::vector<std::string>& texts = {});
/// Calls a static method without a result, with any arguments of any signature.
void callStaticVoidV(JNIEnv* env, const std::string& className, const std::string& method, const std::string& signature,
                     const std::vector<jvalue>& arguments);

/// The pending exception's description, cleared; empty when nothing is pending.
[[nodiscard]] std::string takePendingException(JNIEnv* env);

/// Whether the calling thread is attached to the machine.
[[nodiscard]] bool isAttached(JavaVM* vm);

/// Runs the action on a new thread that the machine does not know, waits for it, and throws what it threw.
template <class Action>
void onFreshThread(Action&& action) {
    std::exception_ptr thrown;
    std::thread thread([&] {
        try {
            std::forward<Action>(action)();
        } catch (...) {
            thrown = std::current_exception();
        }
    });
    thread.join();
    if (thrown) {
        std::rethrow_exception(thrown);
    }
}

}  // namespace storage::javaprovider::test
