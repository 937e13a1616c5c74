#pragma once

#include <jni.h>

#include <string>

#include "JNIUtilsEnv.h"

namespace storage::javaprovider {

/// A Java string as UTF-16 text, surrogates as they are; empty for null. The text ends before the first U+0000.
///
/// Throws AnonymousInternalException<std::bad_alloc>, the Java exception cleared, when Java cannot give the characters.
/// The second form is for native methods, which get a raw environment from Java.
[[nodiscard]] std::u16string jstringToUString(const JNIEnvPtr& env, jstring text);
[[nodiscard]] std::u16string jstringToUString(JNIEnv* env, jstring text);

/// UTF-16 text as a new Java string, a local reference that the caller owns; null for empty text.
///
/// Throws AnonymousInternalException<std::bad_alloc>, the Java exception cleared, when Java has no memory for it; null
/// when Java made none and gave no reason.
[[nodiscard]] jstring ustringToJString(const JNIEnvPtr& env, const std::u16string& text);

}  // namespace storage::javaprovider
