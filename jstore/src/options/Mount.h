#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace jstore {

/// A name that stands for a file system in locations: `java://name/path`.
struct Mount {
    std::string name;
    std::string uri;  ///< ASCII
};

/// Reads `NAME=URI` or `NAME=PATH`; a path becomes the absolute `file:` URI of that folder.
///
/// Throws CommandError, exit code 2: no name, a name that cannot stand in a location (letters, digits, `-`, `.` and `_`
/// can), nothing after the `=`, not UTF-8.
[[nodiscard]] Mount parseMount(std::string_view argument);

/// The local file or folder that the mount shows; empty when its URI is neither a `file:` nor a `jar:file:` one.
[[nodiscard]] std::optional<std::filesystem::path> localTarget(const Mount& mount);

}  // namespace jstore
