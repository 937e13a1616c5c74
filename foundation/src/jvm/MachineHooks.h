#pragma once

#include <jni.h>

#include <array>
#include <string>
#include <vector>

#include "jvm/RedirectedImports.h"

namespace storage::jvm::detail {

/// How far the making of a virtual machine has come, as its hooks see it.
enum class CreationState {
    Idle,      ///< no machine is in the making
    Creating,  ///< JNI_CreateJavaVM runs
    Returned,  ///< it came back, with or without a machine
    Ended,     ///< it tried to end the process; its thread is parked
};

/// The options that make the machine print, exit and abort through this module; they come before all others.
[[nodiscard]] std::vector<JavaVMOption> hookOptions();

/// Functions of the system, each with the function that replaces it while a machine is made. Before the machine has
/// read the options above, and at a few places later, it calls them to end the process and to write to the standard
/// streams.
[[nodiscard]] std::array<Import, 5> hookImports();

/// From now on, what the machine writes is kept, and it cannot end the process.
void beginCreation();

/// Reports that JNI_CreateJavaVM has returned. Called on the thread that ran it.
void reportReturn();

/// Blocks until reportReturn() or until the machine tried to end the process. Returns Returned or Ended.
[[nodiscard]] CreationState awaitCreation();

/// What the machine has written since beginCreation(), as it came; at most some 16 KiB.
[[nodiscard]] std::string creationOutput();

}  // namespace storage::jvm::detail
