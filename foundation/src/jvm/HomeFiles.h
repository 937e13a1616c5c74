#pragma once

#include <filesystem>
#include <string>

namespace storage::jvm::detail {

/// Why the file cannot be a library of this process: missing, no file, cut short, for another machine. Empty when it
/// may be one; the linker may still refuse it.
[[nodiscard]] std::string problemOfLibrary(const std::filesystem::path& file);

/// Why the file cannot be the class image of a Java home (`lib/modules`): missing, no file, no image, cut short in its
/// index. Empty when it may be one.
[[nodiscard]] std::string problemOfImage(const std::filesystem::path& file);

}  // namespace storage::jvm::detail
