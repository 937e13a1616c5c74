#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace storage::jvm::detail {

/// A regular file, open for reading. Anything else of that name is not opened: a pipe would make the caller wait, and a
/// device might notice.
///
/// For one thread.
class RegularFile final {
public:
    explicit RegularFile(const std::filesystem::path& path);
    ~RegularFile();

    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;

    /// Why the file cannot be read: "no such file", "not a file", or the system's words. Empty when it can.
    [[nodiscard]] const std::string& problem() const noexcept { return m_problem; }
    [[nodiscard]] std::uint64_t size() const noexcept { return m_size; }

    /// At most so many bytes from the offset on; fewer where the file ends or cannot be read.
    [[nodiscard]] std::string read(std::uint64_t offset, std::size_t atMost) const;

private:
    int m_descriptor = -1;
    std::uint64_t m_size = 0;
    std::string m_problem;
};

}  // namespace storage::jvm::detail
