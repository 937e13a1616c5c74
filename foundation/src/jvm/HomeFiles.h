#pragma once

#include <filesystem>
#include <string>

namespace storage::jvm::detail {

/// Why the file cannot be a library of this process: missing, no file, cut short, for another machine. Empty when it
/// looks like one; the linker may still find fault with it.
[[nodiscard]] std::string problemOfLibrary(const std::filesystem::path& file);

/// Why the file cannot be the class image of a Java home (`lib/modules`): missing, no file, no image, cut short in its
/// index. Empty when it looks like one.
[[nodiscard]] std::string problemOfImage(const std::filesystem::path& file);

}  // namespace storage::jvm::detail
