#pragma once

#include <jni.h>

#include <filesystem>
#include <vector>

#include "jvm/MachineCreation.h"
#include "storage/jvm/JavaCandidate.h"

namespace storage::jvm::detail {

/// A virtual machine's library in the process.
struct LoadedLibjvm {
    std::filesystem::path path;
    CreateJavaVM* create;
};

/// Loads the first usable candidate; the library stays in the process for ever. Throws AnonymousInternalException
/// <std::runtime_error> whose text names each candidate and its problem when none can be loaded.
[[nodiscard]] LoadedLibjvm loadLibjvm(std::vector<JavaCandidate> candidates);

/// Keeps this library itself in the process until its end: the virtual machine calls functions in it.
void stayInProcess();

/// A virtual machine of this process, whatever started it.
struct RunningMachine {
    JavaVM* vm = nullptr;          ///< null when none runs
    std::filesystem::path libjvm;  ///< empty when the machine is not in a library of the usual name
};

/// Finds a virtual machine that runs in this process already. Loads nothing. The library of a machine that it finds
/// stays in the process for ever.
[[nodiscard]] RunningMachine findRunningMachine();

}  // namespace storage::jvm::detail
