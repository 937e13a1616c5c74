#include "JarFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace jstore {

namespace {

// The zip format: little-endian records, found from the end of the file.
constexpr std::string_view EndSignature("PK\5\6", 4);
constexpr std::string_view End64LocatorSignature("PK\6\7", 4);
constexpr std::string_view End64Signature("PK\6\6", 4);
constexpr std::string_view EntrySignature("PK\1\2", 4);
constexpr std::size_t EndSize = 22;
constexpr std::size_t End64LocatorSize = 20;
constexpr std::size_t End64Size = 56;
constexpr std::size_t EntrySize = 46;
constexpr std::size_t LongestComment = 0xFFFF;

struct Directory {
    std::uint64_t offset;
    std::uint64_t size;
};

std::runtime_error damaged() { return std::runtime_error("damaged: its table of contents cannot be read"); }

std::uint64_t number(std::string_view record, std::size_t at, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = width; i > 0; --i) {
        value = value << 8U | static_cast<unsigned char>(record[at + i - 1]);
    }
    return value;
}

class Reader {
public:
    explicit Reader(const std::filesystem::path& path) : m_file(path, std::ios::binary | std::ios::ate) {
        if (!m_file) {
            throw std::runtime_error("cannot be opened: " + std::generic_category().message(errno));
        }
        m_size = static_cast<std::uint64_t>(m_file.tellg());
    }

    [[nodiscard]] std::uint64_t size() const { return m_size; }

    [[nodiscard]] std::string read(std::uint64_t offset, std::uint64_t size) {
        if (offset > m_size || size > m_size - offset) {
            throw damaged();
        }
        std::string bytes(size, '\0');
        m_file.seekg(static_cast<std::streamoff>(offset));
        if (!m_file.read(bytes.data(), static_cast<std::streamsize>(size))) {
            throw std::runtime_error("cannot be read");
        }
        return bytes;
    }

private:
    std::ifstream m_file;
    std::uint64_t m_size = 0;
};

/// Archives with very many members keep the numbers in a second record, which a locator before the end points to.
Directory directory64(Reader& file, std::uint64_t endOffset) {
    if (endOffset < End64LocatorSize) {
        throw damaged();
    }
    const auto locator = file.read(endOffset - End64LocatorSize, End64LocatorSize);
    if (!locator.starts_with(End64LocatorSignature)) {
        throw damaged();
    }
    const auto end = file.read(number(locator, 8, 8), End64Size);
    if (!end.starts_with(End64Signature)) {
        throw damaged();
    }
    return {number(end, 48, 8), number(end, 40, 8)};
}

Directory findDirectory(Reader& file) {
    const auto tailSize = std::min<std::uint64_t>(file.size(), EndSize + LongestComment);
    const auto tail = file.read(file.size() - tailSize, tailSize);
    const auto at = tail.rfind(EndSignature);
    if (at == std::string::npos || tail.size() - at < EndSize) {
        throw std::runtime_error("not a zip archive");
    }
    const Directory directory{number(tail, at + 16, 4), number(tail, at + 12, 4)};
    const bool tooBig =
        directory.offset == 0xFFFFFFFFU || directory.size == 0xFFFFFFFFU || number(tail, at + 10, 2) == 0xFFFFU;
    return tooBig ? directory64(file, file.size() - tailSize + at) : directory;
}

}  // namespace

JarFile::JarFile(const std::filesystem::path& path) {
    Reader file(path);
    const auto place = findDirectory(file);
    const auto directory = file.read(place.offset, place.size);
    std::string_view rest = directory;
    while (!rest.empty()) {
        if (rest.size() < EntrySize || !rest.starts_with(EntrySignature)) {
            throw damaged();
        }
        const auto nameSize = number(rest, 28, 2);
        const auto entrySize = EntrySize + nameSize + number(rest, 30, 2) + number(rest, 32, 2);
        if (rest.size() < entrySize) {
            throw damaged();
        }
        m_members.emplace(rest.substr(EntrySize, nameSize));
        rest.remove_prefix(entrySize);
    }
}

}  // namespace jstore
