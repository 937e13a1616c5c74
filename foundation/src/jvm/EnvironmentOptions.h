#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace storage::jvm::detail {

/// The options of the virtual machine in the environment variable `name`, as the machine itself splits them: at white
/// space, but not between single or double quotes, which are dropped. Empty when it is not set, or when the program has
/// special privileges. Throws AnonymousInternalException<std::runtime_error> for a quote without its mate.
[[nodiscard]] std::vector<std::string> environmentOptions(const char* name);

/// Splits a text in the same way. `origin` names the text in the error.
[[nodiscard]] std::vector<std::string> splitOptions(std::string_view text, const std::string& origin);

}  // namespace storage::jvm::detail
