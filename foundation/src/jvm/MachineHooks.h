#pragma once

#include <jni.h>

#include <array>
#include <string>
#include <vector>

#include "jvm/RedirectedImports.h"

namespace storage::jvm::detail {

/// Where a virtual machine in the making stands, seen through its hooks.
enum class CreationState {
    Idle,      ///< no machine is in the making
    Creating,  ///< JNI_CreateJavaVM runs
    Returned,  ///< it came back, with or without a machine
    Ended,     ///< it tried to end the process; its thread is parked
};

/// The options that make the machine print, exit and abort through this module; they come before all others.
[[nodiscard]] std::vector<JavaVMOption> hookOptions();

/// Functions of the system with what stands in for them while a machine is made: before it has read the options above,
/// and at a few places later, the machine ends the process and writes to its standard streams without them.
[[nodiscard]] std::array<Import, 5> hookImports();

/// Begins to keep what the machine writes, and to keep it from ending the process.
void beginCreation();

/// Says that JNI_CreateJavaVM has returned; called on the thread that ran it.
void reportReturn();

/// Blocks until reportReturn() or until the machine tried to end the process. Returns Returned or Ended.
[[nodiscard]] CreationState awaitCreation();

/// What the machine has written since beginCreation(), as it came; at most some 16 KiB.
[[nodiscard]] std::string creationOutput();

}  // namespace storage::jvm::detail
