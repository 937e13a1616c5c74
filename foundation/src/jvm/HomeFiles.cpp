#include "jvm/HomeFiles.h"

#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "jvm/RegularFile.h"

// This library's own header, which the linker provides: a library that fits this process has the same marks.
extern "C" [[gnu::visibility("hidden")]] const ElfW(Ehdr) __ehdr_start;  // NOLINT(bugprone-reserved-identifier)

namespace storage::jvm::detail {

namespace {

constexpr const char* CutShort = "cut short";

/// The object at an offset in the bytes; none when the bytes end before it does.
template <class T>
std::optional<T> objectAt(std::string_view bytes, std::uint64_t offset) {
    T object;
    if (offset > bytes.size() || sizeof(T) > bytes.size() - offset) {
        return std::nullopt;
    }
    std::memcpy(&object, bytes.data() + offset, sizeof(T));
    return object;
}

bool isForThisMachine(const ElfW(Ehdr) & header) {
    return std::equal(header.e_ident, header.e_ident + EI_VERSION, __ehdr_start.e_ident) &&
           header.e_machine == __ehdr_start.e_machine && header.e_phentsize == sizeof(ElfW(Phdr));
}

/// How long the file must be to hold every part that is mapped.
std::optional<std::uint64_t> mappedSize(const RegularFile& file, const ElfW(Ehdr) & header) {
    const std::string table = file.read(header.e_phoff, std::size_t{header.e_phnum} * sizeof(ElfW(Phdr)));
    std::uint64_t end = 0;
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        const auto segment = objectAt<ElfW(Phdr)>(table, i * sizeof(ElfW(Phdr)));
        if (!segment) {
            return std::nullopt;
        }
        if (segment->p_type == PT_LOAD) {
            end = std::max<std::uint64_t>(end, segment->p_offset + segment->p_filesz);
        }
    }
    return end;
}

/// The beginning of a class image, in the byte order of its machine.
struct ImageHeader {
    std::uint32_t magic;
    std::uint32_t version;
    std::uint32_t flags;
    std::uint32_t resources;
    std::uint32_t tableLength;
    std::uint32_t locationsSize;
    std::uint32_t stringsSize;
};

constexpr std::uint32_t ImageMagic = 0xCAFEDADA;
/// The table holds two numbers for each of its places.
constexpr std::uint64_t BytesInTable = 2 * sizeof(std::uint32_t);

}  // namespace

std::string problemOfLibrary(const std::filesystem::path& path) {
    const RegularFile file(path);
    if (!file.problem().empty()) {
        return file.problem();
    }
    const auto header = objectAt<ElfW(Ehdr)>(file.read(0, sizeof(ElfW(Ehdr))), 0);
    if (!header) {
        return CutShort;
    }
    if (!isForThisMachine(*header)) {
        return "not a library for this machine";
    }
    const auto needed = mappedSize(file, *header);
    return needed && *needed <= file.size() ? "" : CutShort;
}

std::string problemOfImage(const std::filesystem::path& path) {
    const RegularFile file(path);
    if (!file.problem().empty()) {
        return file.problem();
    }
    const auto header = objectAt<ImageHeader>(file.read(0, sizeof(ImageHeader)), 0);
    if (!header) {
        return CutShort;
    }
    if (header->magic != ImageMagic) {
        return "not a class image for this machine";
    }
    const std::uint64_t index = sizeof(ImageHeader) + header->tableLength * BytesInTable +
                                std::uint64_t{header->locationsSize} + header->stringsSize;
    return index < file.size() ? "" : CutShort;
}

}  // namespace storage::jvm::detail
