#pragma once

#include <filesystem>
#include <string>

namespace jstore {

/// The version that a Java home's file "release" states, such as 17.0.15; empty without one.
[[nodiscard]] std::string versionOf(const std::filesystem::path& javaHome);

/// 17 of "17.0.1"; 1 of "1.8.0", which is old enough; 0 for what is no version.
[[nodiscard]] int majorOf(const std::string& version);

}  // namespace jstore
