#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace jstore::test {

/// The checksum that archives keep of each file.
[[nodiscard]] std::uint32_t crc32(std::string_view bytes);

/// Makes zip archives byte by byte, of entries that are stored and not compressed. Any name goes, also what no honest
/// program would write.
class ZipWriter {
public:
    /// Adds an entry. `mode` is what a POSIX system says of it: type and permissions.
    ZipWriter& add(std::string_view name, std::string_view content, std::uint32_t mode = 0100644);

    /// The archive.
    [[nodiscard]] std::string bytes() const;

private:
    std::string m_entries;
    std::string m_directory;
    std::uint16_t m_count = 0;
};

}  // namespace jstore::test
