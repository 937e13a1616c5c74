#pragma once

#include <filesystem>

#include "options/Options.h"
#include "storage/jvm/JavaCandidate.h"

namespace jstore::doctor {

/// Makes the class archive, or replaces an existing one: a child process starts this Java, does once what the verbs do,
/// and ends Java, which then writes the archive. Call it before this process starts Java.
///
/// The archive appears as a whole, readable by everyone, or not at all: an older one stays after an error. Two
/// processes that make it for the same installation wait for each other. Throws std::system_error naming the file or
/// folder that cannot be used; std::runtime_error with the last words of the child; Interruption. Blocks for about a
/// second.
void makeClassArchive(const Options& options, const storage::jvm::JavaCandidate& java,
                      const std::filesystem::path& archive);

}  // namespace jstore::doctor
