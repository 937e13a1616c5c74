#pragma once

#include <filesystem>

#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"

/// An archive of classes that Java maps into memory, instead of reading, checking and linking them one by one, which
/// takes longer than all that a short command does.
///
/// It is good for the very Java, jars and places of jars that it was made with. Java itself compares them, and passes
/// over an archive that does not fit in silence. It looks at the head only: what is damaged further on is found by the
/// seal (see ArchiveSeal.h).
namespace jstore {

/// Where the archive for a Java is, or would be; empty when its home states no version.
[[nodiscard]] std::filesystem::path classArchiveOf(const Options& options, const storage::jvm::JavaCandidate& java);

/// Whether Java could use an archive: it holds the installed jars, so other entries of the class path rule it out.
[[nodiscard]] bool takesClassArchive(const Options& options);

/// Whether this process has mapped the file.
[[nodiscard]] bool isMapped(const std::filesystem::path& file);

}  // namespace jstore
