#include "java/JarFile.h"

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
constexpr std::string_view MemberSignature("PK\3\4", 4);
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

/// What the record at the archive's end says. Other bytes may come before an archive, such as a program that unpacks
/// it. So this searches for the table of contents where Java does: directly before the record, wherever the record says
/// that it begins.
struct End {
    std::uint64_t position;  ///< of the record, and so the end of the table of contents
    std::uint64_t size;      ///< of the table of contents
    std::uint64_t offset;    ///< of the table of contents in the archive, not counting bytes before it
    bool needsSecond;        ///< the numbers are in a second record

    /// Throws when the table of contents or the archive would begin before the file.
    [[nodiscard]] Directory directory() const {
        if (size > position || offset > position - size) {
            throw damaged();
        }
        return {position - size, size};
    }
};

/// Archives with very many members keep the numbers in a second record, which a locator before the end points to. One
/// without it has just as many members as the first record can state.
End secondEnd(Reader& file, const End& first) {
    if (first.position < End64LocatorSize) {
        return first;
    }
    const std::string locator = file.read(first.position - End64LocatorSize, End64LocatorSize);
    const std::uint64_t position = number(locator, 8, 8);
    if (!locator.starts_with(End64LocatorSignature) || position > first.position) {
        return first;
    }
    const std::string end = file.read(position, std::min<std::uint64_t>(End64Size, file.size() - position));
    if (end.size() < End64Size || !end.starts_with(End64Signature)) {
        return first;
    }
    return {position, number(end, 40, 8), number(end, 48, 8), /*needsSecond=*/false};
}

/// Whether the table of contents, and the first member, are where the record says.
bool leadsToMembers(Reader& file, const End& end) {
    if (end.size > end.position || end.offset > end.position - end.size) {
        return false;
    }
    const std::uint64_t begin = end.position - end.size;
    return file.read(begin, EntrySignature.size()) == EntrySignature &&
           file.read(begin - end.offset, MemberSignature.size()) == MemberSignature;
}

/// The last record that closes an archive: its comment reaches to the end of the file, or, where bytes were added after
/// the archive, it leads to members. A member or a comment may hold bytes that look like a record.
End findEnd(Reader& file) {
    const std::uint64_t tailSize = std::min<std::uint64_t>(file.size(), EndSize + LongestComment);
    const std::string tail = file.read(file.size() - tailSize, tailSize);
    std::size_t from = tail.size() < EndSize ? std::string::npos : tail.size() - EndSize;
    while (from != std::string::npos) {
        const std::size_t at = tail.rfind(EndSignature, from);
        if (at == std::string::npos) {
            break;
        }
        const End end{file.size() - tailSize + at, number(tail, at + 12, 4), number(tail, at + 16, 4),
                      number(tail, at + 12, 4) == 0xFFFFFFFFU || number(tail, at + 16, 4) == 0xFFFFFFFFU ||
                          number(tail, at + 10, 2) == 0xFFFFU};
        if (at + EndSize + number(tail, at + 20, 2) == tail.size() || leadsToMembers(file, end)) {
            return end;
        }
        from = at == 0 ? std::string::npos : at - 1;
    }
    throw std::runtime_error("not a zip archive");
}

Directory findDirectory(Reader& file) {
    const End end = findEnd(file);
    return (end.needsSecond ? secondEnd(file, end) : end).directory();
}

}  // namespace

JarFile::JarFile(const std::filesystem::path& path) {
    Reader file(path);
    const Directory place = findDirectory(file);
    const std::string directory = file.read(place.offset, place.size);
    std::string_view rest = directory;
    while (!rest.empty()) {
        if (rest.size() < EntrySize || !rest.starts_with(EntrySignature)) {
            throw damaged();
        }
        const std::uint64_t nameSize = number(rest, 28, 2);
        const std::uint64_t entrySize = EntrySize + nameSize + number(rest, 30, 2) + number(rest, 32, 2);
        if (rest.size() < entrySize) {
            throw damaged();
        }
        m_members.emplace(rest.substr(EntrySize, nameSize));
        rest.remove_prefix(entrySize);
    }
}

}  // namespace jstore
