#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "options/Options.h"

namespace jstore {

/// A jar or folder in which Java looks for classes.
struct ClassPathEntry {
    std::filesystem::path path;
    std::string origin;  ///< "--class-path", "JSTORE_CLASS_PATH" or "installation"
};

/// The class path of the virtual machine, in order: the option's entries, the environment's, the jars that come with
/// the program. Empty entries drop out.
[[nodiscard]] std::vector<ClassPathEntry> classPathOf(const Options& options);

/// Why Java could not use the entry: missing, not readable, neither a folder nor a jar, a damaged jar. Empty when it
/// can.
[[nodiscard]] std::string problemOf(const ClassPathEntry& entry);

/// Whether the entry, one without a problem, holds the class (its name with dots or slashes).
[[nodiscard]] bool holdsClass(const ClassPathEntry& entry, const std::string& className);

/// The class name as JNI wants it: with slashes.
[[nodiscard]] std::string slashed(std::string className);
/// The class name as people write it: with dots.
[[nodiscard]] std::string dotted(std::string className);

}  // namespace jstore
