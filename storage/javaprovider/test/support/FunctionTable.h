#pragma once

#include <jni.h>
#include <jvmti.h>

namespace storage::javaprovider::test {

/// The machine's own JNI functions, as they were before the first recorder. Call saveFunctionTable() first.
[[nodiscard]] const jniNativeInterface& machineFunctions() noexcept;

/// Keeps the machine's own functions. Does nothing the second time. Throws std::runtime_error when JVMTI refuses.
void saveFunctionTable(jvmtiEnv* jvmti);

/// Puts the recording functions into the table of all threads; the calling thread must be attached.
void installRecordingFunctions(jvmtiEnv* jvmti);

/// Puts the machine's own functions back; the calling thread must be attached.
void restoreMachineFunctions(jvmtiEnv* jvmti);

}  // namespace storage::javaprovider::test
