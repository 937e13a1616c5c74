#include "real/ZipWriter.h"

#include <boost/crc.hpp>

namespace jstore::test {

namespace {

void put(std::string& bytes, std::uint64_t number, int count) {
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    }
}

/// What the entry itself and the directory at the end say alike: 1 January 2020, stored, names in UTF-8.
std::string commonFields(std::string_view name, std::string_view content) {
    constexpr std::uint32_t version = 20;
    constexpr std::uint32_t utf8 = 0x800;
    constexpr std::uint32_t date = (2020 - 1980) << 9 | 1 << 5 | 1;
    std::string fields;
    put(fields, version, 2);
    put(fields, utf8, 2);
    put(fields, 0, 2);
    put(fields, 0, 2);
    put(fields, date, 2);
    put(fields, crc32(content), 4);
    put(fields, content.size(), 4);
    put(fields, content.size(), 4);
    put(fields, name.size(), 2);
    put(fields, 0, 2);
    return fields;
}

}  // namespace

std::uint32_t crc32(std::string_view bytes) {
    boost::crc_32_type checksum;
    checksum.process_bytes(bytes.data(), bytes.size());
    return checksum.checksum();
}

ZipWriter& ZipWriter::add(std::string_view name, std::string_view content, std::uint32_t mode) {
    constexpr std::uint32_t madeOnPosix = 3 << 8 | 20;
    const auto fields = commonFields(name, content);
    m_directory += "PK\x01\x02";
    put(m_directory, madeOnPosix, 2);
    m_directory += fields;
    put(m_directory, 0, 6);
    put(m_directory, std::uint64_t{mode} << 16, 4);
    put(m_directory, m_entries.size(), 4);
    m_directory += name;
    m_entries += "PK\x03\x04" + fields;
    m_entries += name;
    m_entries += content;
    ++m_count;
    return *this;
}

std::string ZipWriter::bytes() const {
    std::string end = "PK\x05\x06";
    put(end, 0, 4);
    put(end, m_count, 2);
    put(end, m_count, 2);
    put(end, m_directory.size(), 4);
    put(end, m_entries.size(), 4);
    put(end, 0, 2);
    return m_entries + m_directory + end;
}

}  // namespace jstore::test
