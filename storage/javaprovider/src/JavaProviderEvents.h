#pragma once

#include <jni.h>

namespace storage::javaprovider {

/// The native method "nativePublish" of Java's NativePublisher: one change event on its way to the callback whose
/// address is `handle`, on the calling Java thread. A handle of 0 drops the event.
///
/// Hazards:
///  - Trusts `handle`: the Java side sends no event once "dispose" has returned.
///  - Has no exception handler: std::runtime_error for a word that it does not know ("Java provider: Unknown entry
///    type.", "Java provider: Unknown kind."), std::bad_function_call for an empty callback, and whatever the callback
///    throws, leave it into Java's frames, which ends the process. The Java side sends only known words, and callbacks
///    do not throw.
void JNICALL nativePublishImpl(JNIEnv* env, jobject self, jlong handle, jstring kind, jstring first, jstring second,
                               jstring entryType, jstring originId);

}  // namespace storage::javaprovider
