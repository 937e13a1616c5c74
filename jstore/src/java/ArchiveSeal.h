#pragma once

#include <filesystem>

namespace jstore {

/// Appends a seal to the file: the number of its bytes and a checksum of them. Java passes over what follows its
/// archive. Throws std::system_error naming the file.
void seal(const std::filesystem::path& file);

/// Whether the file ends with a seal that fits all bytes before it. False for what is no regular file or cannot be read
/// to its end. Java looks at an archive's head only, and damage further on would end the process by a signal; reading
/// the whole costs a quarter of a millisecond for each megabyte.
[[nodiscard]] bool isSealed(const std::filesystem::path& file);

}  // namespace jstore
