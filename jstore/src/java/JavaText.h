#pragma once

#include <jni.h>

#include <optional>
#include <string>

#include "foundation/storage/provider/ErrorCode.h"

namespace jstore {

/// The text of a Java string; empty for null.
[[nodiscard]] std::u16string javaText(JNIEnv* env, jstring text);

/// The result of a method without arguments that gives text; empty when there is none, or when it throws, which leaves
/// no exception pending. Blocks in Java.
[[nodiscard]] std::u16string callForText(JNIEnv* env, jobject object, const char* name);

/// The error code by the number that Java's side gives it; Unknown for any that it does not.
[[nodiscard]] foundation::storage::provider::ErrorCode errorCodeOf(jint number);

}  // namespace jstore
