#pragma once

#include <string>
#include <vector>

#include "storage/jvm/EmbeddedJVM.h"

namespace storage::jvm::detail {

/// The virtual machine's options in the order it reads them, the last of a kind wins: JAVA_TOOL_OPTIONS, the defaults
/// for an embedded machine and the host's own, the heap and the class path, the host's options, _JAVA_OPTIONS. Of the
/// defaults those are missing that the others decide.
///
/// Throws AnonymousInternalException<std::runtime_error> when something on the class path does not exist or cannot
/// stand there, when a variable cannot be split into options or a file of options not be read, and for an option that
/// would have a class archive written in place of a start, or over the one that is to be used; it names the variable.
[[nodiscard]] std::vector<std::string> machineOptions(const EmbeddedJVMOptions& options);

/// The variables that add options, with their values, as an addition to an error text; empty when none is set.
[[nodiscard]] std::string describeVariables();

}  // namespace storage::jvm::detail
