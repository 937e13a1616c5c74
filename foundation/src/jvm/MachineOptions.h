#pragma once

#include <string>
#include <vector>

#include "storage/jvm/EmbeddedJVM.h"

namespace storage::jvm::detail {

/// The virtual machine's options in the order it reads them, the last of a kind wins: JAVA_TOOL_OPTIONS, the defaults
/// for an embedded machine, the heap and the class path, the host's options, _JAVA_OPTIONS.
///
/// Throws AnonymousInternalException<std::runtime_error> when something on the class path does not exist or cannot
/// stand there, or when a variable cannot be split into options.
[[nodiscard]] std::vector<std::string> machineOptions(const EmbeddedJVMOptions& options);

}  // namespace storage::jvm::detail
