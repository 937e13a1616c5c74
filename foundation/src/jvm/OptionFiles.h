#pragma once

#include <string>
#include <vector>

namespace storage::jvm::detail {

/// The options, with the contents of each file that they name in place of its name, so that nothing that the machine
/// does is hidden. `-XX:VMOptionsFile=` names a file with options, written like those in a variable; `-XX:Flags=` names
/// one with flags, which yield to the other options here. `origin` names the options in errors.
///
/// Throws AnonymousInternalException<std::runtime_error> naming origin and file when the file cannot be read, is larger
/// than a mebibyte, or names another file of options.
[[nodiscard]] std::vector<std::string> withOptionFiles(const std::vector<std::string>& options,
                                                       const std::string& origin);

}  // namespace storage::jvm::detail
