#pragma once

#include <string>
#include <vector>

namespace storage::jvm::detail {

/// The options with the contents of the files that they name in the files' place, so that all can be seen that the
/// machine will do: `-XX:VMOptionsFile=` has options as a variable has, `-XX:Flags=` flags, which the other options
/// given here beat. `origin` names the options in errors.
///
/// Throws AnonymousInternalException<std::runtime_error> naming origin and file when it cannot be read, is larger than
/// a mebibyte, or names another file of options.
[[nodiscard]] std::vector<std::string> withOptionFiles(const std::vector<std::string>& options,
                                                       const std::string& origin);

}  // namespace storage::jvm::detail
