#pragma once

#include <jni.h>

#include <string>

namespace jstore {

/// The text of a Java string; empty for null.
[[nodiscard]] std::u16string javaText(JNIEnv* env, jstring text);

/// The result of a method without arguments that gives text; empty when there is none, or when it throws, which leaves
/// no exception pending. Blocks in Java.
[[nodiscard]] std::u16string callForText(JNIEnv* env, jobject object, const char* name);

}  // namespace jstore
