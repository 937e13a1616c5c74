#pragma once

#include <filesystem>

namespace jstore {

/// Appends a trailer to the file: the number of its bytes and their checksum. Java ignores what follows its archive.
/// Throws std::system_error naming the file.
void appendChecksum(const std::filesystem::path& file);

/// Whether the file ends with a trailer that fits all bytes before it. False for anything but a regular file that can
/// be read to its end. Java checks only the beginning of an archive, and damage further on would end the process by a
/// signal. Reading the whole file costs a quarter of a millisecond for each megabyte.
[[nodiscard]] bool hasValidChecksum(const std::filesystem::path& file);

}  // namespace jstore
