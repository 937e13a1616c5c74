#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace storage::jvm::detail {

using CreateJavaVM = decltype(JNI_CreateJavaVM);

/// How an attempt to make a virtual machine went.
struct CreationResult {
    JavaVM* vm = nullptr;      ///< null when there is none
    std::string words;         ///< what the machine wrote until then, as one line
    jint error = JNI_OK;       ///< the JNI error number, when it gave one
    bool endedItself = false;  ///< it tried to end the process: no further attempt is possible
};

/// Makes a virtual machine with these options on a thread of its own, and waits for it. One call at a time.
///
/// Nothing that the machine itself writes reaches stdout or stderr, now or later: what it writes while it starts is in
/// the result, what it writes later is dropped. Its log files are written as usual. A machine that cannot start and
/// tries to end the process does not end it: its half-made threads are parked for ever instead. Once the machine runs,
/// System.exit() ends the process as usual.
/// Throws AnonymousInternalException<std::runtime_error> when the thread cannot be made.
[[nodiscard]] CreationResult createMachine(CreateJavaVM* create, const std::vector<std::string>& options);

}  // namespace storage::jvm::detail
