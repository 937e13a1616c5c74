#pragma once

#include <filesystem>

#include "options/Options.h"

namespace jstore::doctor {

/// Makes the class archive, or makes it again: a child process starts Java, does once what the verbs do, and ends Java,
/// which writes the archive then. To be called before this process starts Java.
///
/// The archive appears as a whole, readable by everyone, or not at all: an older one stays after an error. Makers of
/// the same installation wait for each other. Throws std::system_error naming the file or folder that cannot be used,
/// and std::runtime_error with the last words of the child, and Interruption. Blocks for about a second.
void makeClassArchive(const Options& options, const std::filesystem::path& archive);

}  // namespace jstore::doctor
