#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "jvm/MachineCreation.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace storage::jvm::detail {

/// A virtual machine's library in the process.
struct LoadedLibjvm {
    std::filesystem::path path;
    CreateJavaVM* create;
};

/// Loads the first usable candidate; the library stays in the process for ever. Throws AnonymousInternalException
/// <std::runtime_error> whose text names each candidate and its problem when none can be loaded.
[[nodiscard]] LoadedLibjvm loadLibjvm(const std::vector<JavaCandidate>& candidates);

/// Keeps this library itself in the process until its end: the virtual machine holds on to functions in it.
void stayInProcess();

}  // namespace storage::jvm::detail
