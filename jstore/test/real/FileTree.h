#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace jstore::test {

/// What a folder of this machine holds, as a copy by jstore is to show it: links to files count as those files.
struct FileTree {
    struct Item {
        std::filesystem::path path;
        bool isFolder = false;
        std::uint64_t size = 0;
        timespec lastModified{};
    };

    /// By the path below the root, as bytes.
    std::map<std::string, Item> items;
    /// Links that no copy shows: to folders, and to what is not there.
    std::vector<std::string> passedOver;

    [[nodiscard]] std::size_t files() const;
};

/// Reads everything below the root. Throws std::filesystem::filesystem_error.
[[nodiscard]] FileTree readTree(const std::filesystem::path& root);

/// The differences between the copy and the original, a line each: names, types, bytes, and times of modification,
/// which a copy keeps in whole milliseconds, rounded down. Empty if there are none.
[[nodiscard]] std::vector<std::string> differences(const FileTree& original, const FileTree& copy);

/// Whether two files hold the same bytes. Throws when one cannot be read.
[[nodiscard]] bool sameBytes(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace jstore::test
