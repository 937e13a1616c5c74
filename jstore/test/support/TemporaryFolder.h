#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace jstore::test {

/// A new folder of this test's own, removed with all it holds at the end. Its path holds no symbolic link.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return m_path; }
    /// The path of something in the folder.
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return m_path / name; }
    /// The location of something in the folder: "java:///tmp/…/name". `name` is taken as it stands.
    [[nodiscard]] std::string location(std::string_view name) const;

    /// Makes a file of that content, or a folder, with the folders above it, and gives its path.
    std::filesystem::path file(std::string_view name, std::string_view content = {}) const;
    std::filesystem::path folder(std::string_view name) const;

private:
    std::filesystem::path m_path;
};

/// A file's content.
[[nodiscard]] std::string contentOf(const std::filesystem::path& file);

}  // namespace jstore::test
