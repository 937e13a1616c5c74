#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/Export.h"

namespace storage::jvm {

/// The oldest Java that can be used, by the first number of its version.
inline constexpr int OldestJava = 11;

/// One place where Java is looked for, and what was found there.
struct FOUNDATION_API JavaCandidate {
    std::string origin;            ///< "given home", "JAVA_HOME", "java on PATH" or "distribution folder"
    std::filesystem::path home;    ///< the Java home; empty when the origin names none
    std::filesystem::path libjvm;  ///< the library inside it; empty when there is none
    std::string problem;           ///< why it is not usable; empty for a usable one
    std::string version{};         ///< what the home states, such as "17.0.15"; empty when it states none
};

/// The candidate in one line: its origin, its home, and its problem.
[[nodiscard]] FOUNDATION_API std::string describe(const JavaCandidate& candidate);

/// The first number of a version: 17 of "17.0.15", 1 of "1.8.0", 0 of a text that does not begin with a number.
[[nodiscard]] FOUNDATION_API int majorVersion(const std::string& version);

/// Describes this Java home as a candidate with the origin "given home". Reads the file system, loads nothing.
[[nodiscard]] FOUNDATION_API JavaCandidate javaAt(const std::filesystem::path& home);

/// Loads the first usable candidate whose library can be loaded. The library stays loaded until the process ends.
///
/// Returns that candidate, or null when no candidate is usable. If a usable one cannot be loaded, its problem becomes
/// the linker's message.
[[nodiscard]] FOUNDATION_API const JavaCandidate* loadJava(std::vector<JavaCandidate>& candidates);

}  // namespace storage::jvm
