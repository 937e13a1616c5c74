#pragma once

#include <string>
#include <vector>

#include "storage/jvm/EmbeddedJVM.h"

namespace storage::jvm::detail {

/// The virtual machine's options in the order in which it reads them; the last of a kind wins. They are
/// JAVA_TOOL_OPTIONS, the defaults for an embedded machine, the host's defaults, the heap, the class path, the host's
/// options, _JAVA_OPTIONS. A default is left out if another option decides the same.
///
/// Throws AnonymousInternalException<std::runtime_error> when something on the class path does not exist or cannot
/// stand there, when a variable cannot be split into options, when a file of options cannot be read, and for an option
/// that writes a class archive instead of a start, or over the archive in use. The text names the variable.
[[nodiscard]] std::vector<std::string> machineOptions(const EmbeddedJVMOptions& options);

/// The variables that add options, with their values, for an error text; empty when none is set.
[[nodiscard]] std::string describeVariables();

}  // namespace storage::jvm::detail
