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

/// The class path of the virtual machine, in order: the entries of the option, those of the environment, the jars that
/// come with the program. Empty entries drop out.
[[nodiscard]] std::vector<ClassPathEntry> classPathOf(const Options& options);

/// Why Java cannot use the entry: missing, not readable, neither a folder nor a jar, a damaged jar. Empty if it can.
[[nodiscard]] std::string problemOf(const ClassPathEntry& entry);

/// Whether the entry holds the class, named with dots or slashes. Only for an entry without a problem.
[[nodiscard]] bool holdsClass(const ClassPathEntry& entry, const std::string& className);

/// The class name as JNI wants it: with slashes.
[[nodiscard]] std::string slashed(std::string className);
/// The class name as people write it: with dots.
[[nodiscard]] std::string dotted(std::string className);

}  // namespace jstore
