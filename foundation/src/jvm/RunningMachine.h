#pragma once

#include <jni.h>

#include <filesystem>

namespace storage::jvm::detail {

/// A virtual machine of this process, whoever started it.
struct RunningMachine {
    JavaVM* vm = nullptr;          ///< null when none runs
    std::filesystem::path libjvm;  ///< empty when the machine is not in a library of the usual name
};

/// Looks for a virtual machine that runs in this process already. Loads nothing; the library of a machine that is found
/// stays in the process from then on.
[[nodiscard]] RunningMachine findRunningMachine();

}  // namespace storage::jvm::detail
