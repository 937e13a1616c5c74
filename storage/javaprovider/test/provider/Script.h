#pragma once

#include <jni.h>

#include <string>
#include <vector>

/// Records what was asked of scripted back ends, and sets what they do. Every function needs an attached thread.
namespace storage::javaprovider::test::script {

/// Forgets calls, answers and failures.
void reset(JNIEnv* env);

/// One line for each call: the method and its arguments.
[[nodiscard]] std::vector<std::string> calls(JNIEnv* env);
/// How many back ends were made.
[[nodiscard]] int instances(JNIEnv* env);

/// The next call of the method throws a failure of that kind.
void failNext(JNIEnv* env, const std::string& method, const std::string& kind, const std::string& text);
/// Every call of the method does.
void failAlways(JNIEnv* env, const std::string& method, const std::string& kind, const std::string& text);
void answer(JNIEnv* env, const std::string& method, bool value);

}  // namespace storage::javaprovider::test::script
