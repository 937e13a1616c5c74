#pragma once

#include <filesystem>

#include "options/Options.h"
#include "storage/jvm/EmbeddedJVM.h"

/// An archive of classes that Java maps into memory. Reading, checking and linking them one by one would take longer
/// than everything else that a short command does.
///
/// It is valid only for the Java, the jars and the places of the jars that it was made with. Java itself compares them,
/// and silently ignores an archive that does not fit. Java checks only the beginning of the archive; the checksum finds
/// damage further on (see ArchiveChecksum.h).
namespace jstore {

/// Where the archive for a Java is, or would be; empty when its home states no version.
[[nodiscard]] std::filesystem::path classArchiveOf(const Options& options, const storage::jvm::JavaCandidate& java);

/// Whether Java could use an archive: it holds the installed jars, so other entries of the class path rule it out.
[[nodiscard]] bool takesClassArchive(const Options& options);

/// Whether this process has mapped the file.
[[nodiscard]] bool isMapped(const std::filesystem::path& file);

}  // namespace jstore
