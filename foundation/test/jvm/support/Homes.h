#pragma once

#include <filesystem>

namespace test {

/// A file that passes for a library of this process from outside, and holds nothing.
void makeEmptyLibrary(const std::filesystem::path& file);

/// A file that passes for the class image of a Java home, and holds no class.
void makeEmptyImage(const std::filesystem::path& file);

/// A folder that passes for a Java home from outside: libjvm.so, the other libraries and the image hold nothing.
void makeEmptyHome(const std::filesystem::path& home);

/// A home of the Java that this machine has, by links to its files. The machine's library is a copy, since it looks for
/// the rest from its own place.
void makeLinkedHome(const std::filesystem::path& home);

}  // namespace test
